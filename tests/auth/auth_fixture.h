// Tests of the key handshake and of the list of clients.
#ifndef KIO_TESTS_AUTH_AUTH_FIXTURE_H
#define KIO_TESTS_AUTH_AUTH_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {

// What functions of the C library give to the list of clients in these tests.
struct Sandbox {
  bool calloc_fails = false;
  // The results of `time` and `rand`.
  std::time_t time = 1'000'000'000;
  int random = 0x0012ABCD;
  // Seeds given to `srand`, in order.
  std::vector<unsigned> seeds;
  // A client whose memory is about to be freed, and what it held at that moment.
  const ClientAuthInfo* watched = nullptr;
  std::string freed_password = "not freed";
};
Sandbox& TheSandbox();

// The uptimes that a long can hold even `ahead` seconds later: a long may have 32 bits.
inline std::vector<long> PossibleUptimes(std::initializer_list<long long> uptimes, long ahead) {
  std::vector<long> possible;
  for (const long long uptime : uptimes) {
    if (uptime <= std::numeric_limits<long>::max() - ahead) {
      possible.push_back(static_cast<long>(uptime));
    }
  }
  return possible;
}

// Starts from an empty list, an empty store and the uptime 1000.
class AuthTest : public ::testing::Test {
 protected:
  AuthTest();
  ~AuthTest() override;

  // Adds a client to the global list. Returns it.
  static ClientAuthInfo* Add(const std::string& ip, int session, int mode = KIOAPP_MATCH_ADDRESS);
  // The addresses in the global list, in order.
  static std::vector<std::string> Addresses();
  // The digits of a digest, made by MD5Digest.
  static std::string Md5Text(const std::string& text);

  FakeHost& host_ = FakeHost::Get();
  Sandbox& sandbox_ = TheSandbox();
};

}  // namespace kio::test

#endif
