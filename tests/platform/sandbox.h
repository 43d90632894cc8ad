// What the library sees of the machine: its files at fixed places, network interfaces, system log
// and failures that do not happen by themselves.
#ifndef KIO_TESTS_PLATFORM_SANDBOX_H
#define KIO_TESTS_PLATFORM_SANDBOX_H

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/fake_host.h"

namespace kio::test {

class Sandbox {
 public:
  static Sandbox& Get();

  // Empties everything and restores the defaults below.
  void Reset();

  // Files directly below /var and /tmp at which the library looks lie here instead.
  [[nodiscard]] std::string PathOf(const std::string& path) const;
  void Create(const std::string& path, const std::string& contents = "") const;
  void Remove(const std::string& path) const;
  [[nodiscard]] std::string Contents(const std::string& path) const {
    return ReadFile(PathOf(path));
  }

  // Flags of the network interfaces that exist, by name.
  std::map<std::string, short> interfaces;
  // Names of the interfaces whose flags were asked for, in order.
  std::vector<std::string> probed;
  // Messages sent to the system log, "PRIORITY MESSAGE".
  std::vector<std::string> system_log;
  // Domain and type of each socket opened, "DOMAIN TYPE".
  std::vector<std::string> sockets;
  bool socket_fails = false;
  bool calloc_fails = false;
  // When set, every other `open`, `read` and `write` is interrupted, and one byte at a time moves.
  bool slow_files = false;
  // When set, `write` moves nothing and tells no error.
  bool writes_nothing = false;

 private:
  TemporaryDirectory directory_;
};

// A test over a fresh host and a fresh sandbox.
class SandboxTest : public ::testing::Test {
 protected:
  SandboxTest() {
    host_.Reset();
    sandbox_.Reset();
  }
  ~SandboxTest() override { sandbox_.Reset(); }

  FakeHost& host_ = FakeHost::Get();
  Sandbox& sandbox_ = Sandbox::Get();
};

}  // namespace kio::test

#endif
