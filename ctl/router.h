// A router as the commands see it: requests that log in when need be, and refusals as failures.
#ifndef CTL_ROUTER_H
#define CTL_ROUTER_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "answers.h"
#include "http.h"
#include "options.h"

namespace kioctl {

// The key of a login, made of a router's uptime, a client's address and the password.
std::string LoginKey(long uptime, const std::string& address, const std::string& password);

class Router {
 public:
  Router(const std::string& url, const Options& options);

  const std::string& url() const { return http_.url(); }

  // Gives the answer whatever its status, after a login when it was 401. Throws a Failure when
  // there is no answer, or no password.
  Reply Try(const Request& request);

  // The same without a login.
  Reply TryAsIs(const Request& request);

  // The answer, which is no refusal: that is thrown.
  Reply Ask(const Request& request);

  // The answer to a request that needs no login.
  nlohmann::json Device();

  // Logs in with the password, which is asked for once.
  void LogIn();

  // The password, which is asked for once. Throws a Failure without any.
  const std::string& GivenPassword();

 private:
  Http http_;
  const Options* options_;
  std::optional<std::string> password_;
};

}  // namespace kioctl

#endif  // CTL_ROUTER_H
