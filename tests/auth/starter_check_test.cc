// Which requests log a client in.
#include <algorithm>

#include "auth_fixture.h"
#include "platform/guarded.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;

constexpr char kIp[] = "10.1.1.2";

class StarterCheckTest : public AuthTest {
 protected:
  StarterCheckTest() { host_.Set("/sys/user:1/password", "pw"); }

  // The key of a slot for kIp.
  static std::string Key(long slot, const std::string& password = "pw") {
    return Md5Text(std::to_string(slot) + kIp + "admin" + password);
  }
  static int Check(const std::string& request) {
    // A reading beyond the request's end ends the test.
    const Guarded text(request);
    return starter_auth_check(text.data(), kIp, "");
  }
  int CheckAt(long uptime, const std::string& request) {
    host_.uptime = uptime;
    return Check(request);
  }
};

TEST_F(StarterCheckTest, GoodKeyLogsTheClientIn) {
  host_.uptime = 24680;
  EXPECT_EQ(starter_auth_check("kioAppKey= 22a2e2a2b0688d71079579b81c19d57b", kIp, ""), 0);
  const ClientAuthInfo* const client = clientauthinfo;
  ASSERT_NE(client, nullptr);
  EXPECT_EQ(cur_authinfo, client);
  EXPECT_STREQ(client->ip, kIp);
  EXPECT_STREQ(client->username, "admin");
  EXPECT_STREQ(client->password, "pw");
  EXPECT_STREQ(client->sessionid, "0012abcd");
  EXPECT_EQ(client->logout, 24980U);
  EXPECT_EQ(check_StarterAuthIP(kIp, ""), 0);
  host_.uptime = 24980;
  EXPECT_EQ(check_StarterAuthIP(kIp, ""), -1);
}

TEST_F(StarterCheckTest, SecondLoginAddsNoClient) {
  EXPECT_EQ(CheckAt(1000, "BKey=" + Key(50)), 0);
  EXPECT_EQ(CheckAt(1019, "BKey=" + Key(50)), 0);
  EXPECT_THAT(Addresses(), ElementsAre(kIp));
  EXPECT_EQ(clientauthinfo->logout, 1319U);
}

TEST_F(StarterCheckTest, SlotBeforeAndThreeAfterAreGood) {
  for (const char* const marker : {"kioAppKey=:", "BKey="}) {
    for (const long uptime : {1000L, 1001L, 1019L}) {
      for (long slot = 40; slot <= 60; ++slot) {
        EXPECT_EQ(CheckAt(uptime, marker + Key(slot)), slot >= 49 && slot <= 53 ? 0 : -1)
            << marker << " " << uptime << " " << slot;
      }
    }
  }
}

TEST_F(StarterCheckTest, KeyIsGoodFromSixtySecondsBeforeItsSlotToTwentyBehindIt) {
  const std::string request = "kioAppKey= " + Key(50);
  EXPECT_EQ(CheckAt(939, request), -1);
  EXPECT_EQ(CheckAt(940, request), 0);
  EXPECT_EQ(CheckAt(1000, request), 0);
  EXPECT_EQ(CheckAt(1039, request), 0);
  EXPECT_EQ(CheckAt(1040, request), -1);
}

TEST_F(StarterCheckTest, SlotBeforeTheFirstIsMinusOne) {
  // Quirk "slot-before-the-first"
  EXPECT_EQ(Key(-1), "a847c9f3351d89de75a5de65733be6e2");  // of "-110.1.1.2adminpw"
  for (const long uptime : {0L, 19L}) {
    EXPECT_EQ(CheckAt(uptime, "BKey=" + Key(-1)), 0);
    EXPECT_EQ(CheckAt(uptime, "BKey=" + Key(-2)), -1);
    EXPECT_EQ(CheckAt(uptime, "BKey=" + Key(3)), 0);
    EXPECT_EQ(CheckAt(uptime, "BKey=" + Key(4)), -1);
  }
  EXPECT_EQ(CheckAt(20, "BKey=" + Key(-1)), -1);
}

TEST_F(StarterCheckTest, SlotsAreGoodAtAnyUptime) {
  for (const long uptime :
       PossibleUptimes({180, 1999980, 2147483640, 2147483647, 2147483648, 4294967300}, 0)) {
    for (long ahead = -2; ahead <= 4; ++ahead) {
      EXPECT_EQ(CheckAt(uptime, "kioAppKey= " + Key(uptime / 20 + ahead)),
                ahead >= -1 && ahead <= 3 ? 0 : -1)
          << uptime << " " << ahead;
    }
  }
}

TEST_F(StarterCheckTest, OneCharacterBeforeTheFullKeyIsSkipped) {
  // Quirk "key-after-a-separator"
  const std::string key = Key(50);
  for (const char* const separator : {" ", ":", "=", "\"", "0", "\n"}) {
    EXPECT_EQ(Check("kioAppKey=" + std::string(separator) + key), 0) << separator;
  }
  EXPECT_EQ(Check("kioAppKey=" + key), -1);
  EXPECT_EQ(Check("kioAppKey=  " + key), -1);
  EXPECT_EQ(Check("kioAppKey=" + key.substr(0, 1) + key), 0);
}

TEST_F(StarterCheckTest, ShortKeyFollowsAtOnce) {
  const std::string key = Key(50);
  EXPECT_EQ(Check("BKey=" + key.substr(0, 8)), 0);
  EXPECT_EQ(Check("BKey=" + key.substr(0, 8) + "anything"), 0);
  EXPECT_EQ(Check("BKey= " + key.substr(0, 8)), -1);
  EXPECT_EQ(Check("BKey=" + key.substr(0, 7)), -1);
  EXPECT_EQ(Check("BKey=" + key.substr(0, 7) + "&"), -1);
}

TEST_F(StarterCheckTest, MarkersStandAnywhereInTheRequest) {
  const std::string key = Key(50);
  EXPECT_EQ(Check("GET /x?a=1&kioAppKey=:" + key + "&b=2 HTTP/1.1\r\n"), 0);
  EXPECT_EQ(Check("myBKey=" + key.substr(0, 8) + ";"), 0);
  EXPECT_EQ(Check("kioappkey= " + key), -1);
  EXPECT_EQ(Check("bkey=" + key), -1);
  EXPECT_EQ(Check("kioAppKey: " + key), -1);
  EXPECT_EQ(Check("BKey " + key), -1);
}

TEST_F(StarterCheckTest, FirstOccurrenceOfAMarkerCounts) {
  const std::string key = Key(50);
  EXPECT_EQ(Check("BKey=00000000 BKey=" + key), -1);
  EXPECT_EQ(Check("BKey=" + key + " BKey=00000000"), 0);
  EXPECT_EQ(Check("kioAppKey= 0 kioAppKey= " + key), -1);
}

TEST_F(StarterCheckTest, FullKeyAloneDecidesWhenBothAreThere) {
  const std::string key = Key(50);
  const std::string wrong = Key(50, "wrong");
  EXPECT_EQ(Check("BKey=" + key + "&kioAppKey= " + wrong), -1);
  EXPECT_EQ(Check("kioAppKey= " + wrong + "&BKey=" + key), -1);
  EXPECT_EQ(Check("BKey=" + key + "&kioAppKey="), -1);
  EXPECT_EQ(clientauthinfo, nullptr);
  EXPECT_EQ(Check("BKey=00000000&kioAppKey= " + key), 0);
}

TEST_F(StarterCheckTest, EveryCharacterOfAKeyCounts) {
  const std::string key = Key(50);
  for (std::size_t i = 0; i < key.size(); ++i) {
    for (const char other : {'0', '9', 'a', 'f', 'g', 'A', 'F', ' ', '/', ':', '`', '\x80'}) {
      std::string changed = key;
      changed[i] = other;
      const int expected = changed == key ? 0 : -1;
      EXPECT_EQ(Check("kioAppKey= " + changed), expected) << changed;
      EXPECT_EQ(Check("BKey=" + changed), i < 8 ? expected : 0) << changed;
    }
  }
}

TEST_F(StarterCheckTest, UpperCaseDigitsAreNoKey) {
  std::string key = Key(50);
  std::transform(key.begin(), key.end(), key.begin(), [](char c) {
    return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  ASSERT_NE(key, Key(50));
  EXPECT_EQ(Check("kioAppKey= " + key), -1);
}

// Whatever stands where the last byte would.
TEST_F(StarterCheckTest, AKeyWithoutItsLastByteIsNoKey) {
  for (long slot = 1; slot <= 2000; ++slot) {
    EXPECT_EQ(CheckAt(slot * 20, "kioAppKey= " + Key(slot).substr(0, 30)), -1) << slot;
  }
}

TEST_F(StarterCheckTest, RequestMayEndAnywhere) {
  for (const std::string& whole : {"kioAppKey= " + Key(50), "BKey=" + Key(50).substr(0, 8)}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_EQ(Check(whole.substr(0, size)), -1) << size;
    }
    EXPECT_EQ(Check(whole), 0);
  }
}

TEST_F(StarterCheckTest, WhatFollowsAFullKeyDoesNotCount) {
  EXPECT_EQ(Check("kioAppKey= " + Key(50) + "0123456789abcdef"), 0);
}

TEST_F(StarterCheckTest, KeyIsBoundToAddressAndPassword) {
  const std::string request = "kioAppKey= " + Key(50);
  EXPECT_EQ(starter_auth_check(request.c_str(), "10.1.1.3", ""), -1);
  EXPECT_EQ(starter_auth_check(request.c_str(), "", ""), -1);
  host_.Set("/sys/user:1/password", "changed");
  EXPECT_EQ(Check(request), -1);
  EXPECT_EQ(Check("kioAppKey= " + Key(50, "changed")), 0);
  EXPECT_STREQ(clientauthinfo->password, "changed");
}

TEST_F(StarterCheckTest, EmptyPasswordIsUsedAsItIs) {
  host_.Delete("/sys/user:1/password");
  EXPECT_EQ(Check("kioAppKey= " + Key(50, "pw")), -1);
  EXPECT_EQ(Check("kioAppKey= " + Key(50, "")), 0);
  EXPECT_STREQ(clientauthinfo->password, "");
}

TEST_F(StarterCheckTest, LongPasswordsAreCut) {
  // The sources of the five slots then take more than one block of the digest.
  for (const std::size_t size :
       std::initializer_list<std::size_t>{30, 40, 47, 48, 49, 63, 64, 2000}) {
    const std::string password(size, 'p');
    host_.Set("/sys/user:1/password", password);
    EXPECT_EQ(Check("kioAppKey= " + Key(50, password.substr(0, 63))), 0) << size;
    EXPECT_EQ(Check("kioAppKey= " + Key(50, password.substr(0, 62))), size > 62 ? -1 : 0) << size;
    EXPECT_STREQ(cur_authinfo->password, password.substr(0, 63).c_str());
    EXPECT_EQ(clientAuthListDel(&clientauthinfo, nullptr, nullptr, 1), 0);
  }
}

// The source of one slot may take a block more than that of the slot before.
TEST_F(StarterCheckTest, SlotsOfDifferentLength) {
  for (const std::size_t size : std::initializer_list<std::size_t>{39, 40, 41}) {
    const std::string password(size, 'p');
    host_.Set("/sys/user:1/password", password);
    for (const long slot : {8L, 9L, 10L, 99L, 100L}) {
      EXPECT_EQ(CheckAt(slot * 20 - 60, "kioAppKey= " + Key(slot, password)), 0);
      EXPECT_EQ(CheckAt(slot * 20 + 20, "kioAppKey= " + Key(slot, password)), 0);
      EXPECT_EQ(CheckAt(slot * 20 + 40, "kioAppKey= " + Key(slot, password)), -1);
    }
  }
}

TEST_F(StarterCheckTest, AddressIsCutInTheListAndInTheSource) {
  const std::string ip(200, '7');
  const std::string request = "kioAppKey= " + Md5Text(("50" + ip).substr(0, 127));
  EXPECT_EQ(starter_auth_check(request.c_str(), ip.c_str(), ""), 0);
  EXPECT_THAT(Addresses(), ElementsAre(std::string(127, '7')));
}

TEST_F(StarterCheckTest, SessionTextIsNotLookedAt) {
  const std::string request = "BKey=" + Key(50);
  for (const char* const session : {static_cast<const char*>(nullptr), "", "0012abcd", "other"}) {
    EXPECT_EQ(starter_auth_check(request.c_str(), kIp, session), 0);
  }
  EXPECT_THAT(Addresses(), ElementsAre(kIp));
}

TEST_F(StarterCheckTest, WithoutMemoryTheKeyIsGoodAllTheSame) {
  sandbox_.calloc_fails = true;
  EXPECT_EQ(Check("BKey=" + Key(50)), 0);
  sandbox_.calloc_fails = false;
  EXPECT_EQ(clientauthinfo, nullptr);
  EXPECT_EQ(check_StarterAuthIP(kIp, ""), -1);
}

TEST_F(StarterCheckTest, NullTextsAreRefused) {
  EXPECT_EQ(starter_auth_check(nullptr, kIp, ""), -1);
  EXPECT_EQ(starter_auth_check("BKey=00000000", nullptr, ""), -1);
}

TEST_F(StarterCheckTest, SharedTextStaysAsItWas) {
  MD5Encryption("abc");
  EXPECT_EQ(Check("BKey=" + Key(50)), 0);
  MD5Encryption("abc");
  EXPECT_EQ(starter_auth_check("BKey=00000000", kIp, ""), -1);
  EXPECT_STREQ(string, "900150983cd24fb0d6963f7d28e17f72");
}

TEST_F(StarterCheckTest, PasswordIsReadOnceWhateverTheRequest) {
  for (const char* const request : {"", "BKey=00000000", "kioAppKey="}) {
    host_.ClearCalls();
    EXPECT_EQ(Check(request), -1);
    const std::vector<StoreCall> expected = {
        {StoreCall::Kind::kGetText, "/sys/user:1/password", "pw"}};
    EXPECT_EQ(host_.calls(), expected) << request;
  }
}

TEST_F(StarterCheckTest, LogOfALogin) {
  const std::string request = "x&kioAppKey=:" + Key(50) + "&y";
  log_file::Start(5);
  EXPECT_EQ(Check(request), 0);
  EXPECT_EQ(log_file::Contents(), "1000: 1000:starter key success, logout=1300\n");
  log_file::Start(7);
  EXPECT_EQ(Check(request), 0);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:starter_auth_check]\n"
            "1000: match_buff = " +
                Key(50) +
                "&y, kioApp_ip=10.1.1.2, "
                "time=1000\n"
                "1000: 1000:starter key success, logout=1300\n"
                "1000: 1000:clientAuthListAdd]\n");
}

TEST_F(StarterCheckTest, LogOfRefusals) {
  log_file::Start(7);
  EXPECT_EQ(Check("no key"), -1);
  EXPECT_EQ(log_file::Contents(), "1000: 1000:starter_auth_check]\n");
  log_file::Start(7);
  EXPECT_EQ(Check("BKey=%s%n"), -1);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:starter_auth_check]\n"
            "1000: match_buff = %s%n, kioApp_ip=10.1.1.2, time=1000\n");
  log_file::Start(7);
  EXPECT_EQ(Check("kioAppKey="), -1);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:starter_auth_check]\n"
            "1000: match_buff = , kioApp_ip=10.1.1.2, time=1000\n");
  log_file::Start(6);
  EXPECT_EQ(Check("BKey=00000000"), -1);
  EXPECT_EQ(log_file::Contents(), "");
}

}  // namespace
}  // namespace kio::test
