// The host's check of a key, against the library's.
#include "../../host/login_key.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

struct Login {
  std::string address;
  std::string password;
  long uptime;
};

bool LibrarySays(const std::string& request, const Login& login) {
  FakeHost::Get().uptime = login.uptime;
  FakeHost::Get().Set("/sys/user:1/password", login.password);
  clientAuthListDel(&clientauthinfo, nullptr, nullptr, KIOAPP_MATCH_ADDRESS);
  return starter_auth_check(request.c_str(), login.address.c_str(), request.c_str()) == 0;
}

bool HostSays(const std::string& request, const Login& login) {
  return kiohost::HoldsGoodKey(request, login.address, login.password, login.uptime);
}

// The key of the time slot of that second.
std::string KeyAt(long uptime, const Login& login) {
  FakeHost::Get().uptime = uptime;
  FakeHost::Get().Set("/sys/user:1/password", login.password);
  return generate_StarterKey(login.address.c_str());
}

std::vector<Login> Logins() {
  std::vector<Login> logins;
  for (const long uptime : {0L, 19L, 20L, 199L, 1999L, 2000L, 123456L, 2147483600L}) {
    logins.push_back({"10.1.1.2", "pw", uptime});
    logins.push_back({"fe80::1", "", uptime});
    logins.push_back({"::1", std::string(63, 'p'), uptime});
    logins.push_back({"::1", std::string(90, 'p'), uptime});
    logins.push_back({std::string(100, '1'), "p\xc3\xa4ss w\\rd'", uptime});
  }
  return logins;
}

TEST(LoginKeyTest, TheSameSlotsAreGood) {
  constexpr long kSlot = 20;
  FakeHost::Get().Reset();
  for (const Login& login : Logins()) {
    int good = 0;
    for (long slot = -3; slot <= 5; ++slot) {
      const std::string key = KeyAt(login.uptime + slot * kSlot, login);
      std::string both = "BKey=";
      both.append(key).append("kioAppKey=").append(key);
      for (const std::string& request : {"kioAppKey=:" + key, "x BKey=" + key.substr(0, 8), both}) {
        const bool expected = LibrarySays(request, login);
        EXPECT_EQ(HostSays(request, login), expected) << request << " at " << login.uptime;
        good += expected ? 1 : 0;
      }
    }
    // There is no slot before the boot.
    EXPECT_GE(good, 8) << login.uptime;
  }
}

TEST(LoginKeyTest, AnyRequestIsReadInTheSameWay) {
  constexpr int kRequests = 20000;
  FakeHost::Get().Reset();
  std::mt19937 random(1);
  const Login login = {"10.1.1.2", "pw", 5000};
  const std::string key = KeyAt(login.uptime, login);
  const std::vector<std::string> pieces = {"kioAppKey=",
                                           "BKey=",
                                           "=",
                                           "&",
                                           " ",
                                           "KEY",
                                           key,
                                           key.substr(0, 8),
                                           "kioApp",
                                           "Key=",
                                           "A",
                                           "0",
                                           key.substr(0, 31),
                                           std::string(32, '0'),
                                           "kioAppkey="};
  int good = 0;
  for (int i = 0; i < kRequests; ++i) {
    std::string request;
    for (size_t count = 1 + random() % 6; count > 0; --count) {
      request += pieces[random() % pieces.size()];
    }
    if (random() % 4 == 0) {
      request[random() % request.size()] = static_cast<char>(1 + random() % 255);
    }
    const bool expected = LibrarySays(request, login);
    ASSERT_EQ(HostSays(request, login), expected) << request;
    good += expected ? 1 : 0;
  }
  EXPECT_GT(good, 100);
}

}  // namespace
}  // namespace kio::test
