// Requests to the control port.
#ifndef TESTS_E2E_CONTROL_H
#define TESTS_E2E_CONTROL_H

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host_process.h"
#include "http_client.h"

// A host with a control port, whose clock stands still.
class Bench {
 public:
  bool Start(std::vector<std::string> arguments = {}) {
    AddOptions(&arguments);
    return host_.Start(arguments);
  }
  bool StartClosed(std::vector<std::string> arguments = {}) {
    AddOptions(&arguments);
    return host_.StartClosed(arguments);
  }

  HostProcess& host() { return host_; }
  int port() const { return host_.port(); }
  int control_port() const { return host_.control_port(); }

  // The JSON of an answer with this status; null for another one.
  nlohmann::json Ask(const HttpResponse& response, int status = 200) const {
    EXPECT_EQ(response.status, status) << response.body;
    return response.status == status ? nlohmann::json::parse(response.body, nullptr, false)
                                     : nlohmann::json();
  }
  nlohmann::json GetControl(const std::string& url) const { return Ask(Get(control_port(), url)); }
  nlohmann::json PostControl(const std::string& url, const nlohmann::json& body) const {
    return Ask(Post(control_port(), url, body.dump()));
  }

  void Advance(double seconds) const { PostControl("/clock", {{"advance", seconds}}); }
  void SetUptime(long uptime) const { PostControl("/clock", {{"uptime", uptime}}); }
  nlohmann::json Device() const { return Ask(Get(port(), "/device")); }

 private:
  static void AddOptions(std::vector<std::string>* arguments) {
    arguments->insert(arguments->end(), {"--control", "0", "--clock=manual"});
  }

  HostProcess host_;
};

#endif  // TESTS_E2E_CONTROL_H
