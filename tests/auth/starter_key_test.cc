// The keys that the library makes for the host.
#include "auth_fixture.h"

namespace kio::test {
namespace {

class StarterKeyTest : public AuthTest {
 protected:
  StarterKeyTest() { host_.Set("/sys/user:1/password", "pw"); }
};

TEST_F(StarterKeyTest, FullKeyIsTheDigestOfSlotAddressUserAndPassword) {
  host_.uptime = 1234L * 20;
  // Of "123410.1.1.2adminpw".
  EXPECT_STREQ(generate_StarterKey("10.1.1.2"), "22a2e2a2b0688d71079579b81c19d57b");
  EXPECT_EQ(generate_StarterKey("10.1.1.2"), static_cast<char*>(string));
}

TEST_F(StarterKeyTest, ShortKeyIsItsFirstEightDigits) {
  host_.uptime = 1234L * 20;
  EXPECT_STREQ(generate_BKey("10.1.1.2"), "22a2e2a2");
  EXPECT_EQ(generate_BKey("10.1.1.2"), static_cast<char*>(string));
}

TEST_F(StarterKeyTest, EachKeyOverwritesTheOneBefore) {
  host_.uptime = 1234L * 20;
  generate_StarterKey("10.1.1.2");
  generate_BKey("10.1.1.2");
  EXPECT_STREQ(string, "22a2e2a2");
  generate_StarterKey("10.1.1.2");
  EXPECT_STREQ(string, "22a2e2a2b0688d71079579b81c19d57b");
  MD5Encryption("");
  EXPECT_STREQ(string, "d41d8cd98f00b204e9800998ecf8427e");
}

TEST_F(StarterKeyTest, SlotChangesEveryTwentySeconds) {
  for (const long begin :
       PossibleUptimes({0, 20, 1000, 2147483620, 2147483640, 2147483660, 42949672940}, 19)) {
    const long slot = begin / 20;
    const std::string expected = Md5Text(std::to_string(slot) + "10.1.1.2adminpw");
    for (const long second : {0L, 1L, 19L}) {
      host_.uptime = begin + second;
      EXPECT_EQ(generate_StarterKey("10.1.1.2"), expected) << host_.uptime;
      EXPECT_EQ(generate_BKey("10.1.1.2"), expected.substr(0, 8)) << host_.uptime;
    }
  }
}

TEST_F(StarterKeyTest, PasswordIsReadEachTime) {
  host_.uptime = 0;
  EXPECT_EQ(generate_StarterKey("a"), Md5Text("0aadminpw"));
  host_.Set("/sys/user:1/password", "other");
  EXPECT_EQ(generate_StarterKey("a"), Md5Text("0aadminother"));
  host_.Set("/sys/user:1/password", "");
  EXPECT_EQ(generate_StarterKey("a"), Md5Text("0aadmin"));
  host_.Delete("/sys/user:1/password");
  EXPECT_EQ(generate_StarterKey("a"), Md5Text("0aadmin"));
}

TEST_F(StarterKeyTest, PasswordCountsUpToSixtyThreeCharacters) {
  host_.uptime = 0;
  for (const std::size_t size : std::initializer_list<std::size_t>{62, 63, 64, 65, 4000}) {
    const std::string password(size, 'p');
    host_.Set("/sys/user:1/password", password);
    EXPECT_EQ(generate_StarterKey("a"), Md5Text("0aadmin" + password.substr(0, 63))) << size;
  }
}

TEST_F(StarterKeyTest, SourceCountsUpToOneHundredTwentySevenCharacters) {
  host_.uptime = 0;
  for (std::size_t size = 100; size <= 140; ++size) {
    const std::string address(size, '1');
    const std::string source = "0" + address + "adminpw";
    EXPECT_EQ(generate_StarterKey(address.c_str()), Md5Text(source.substr(0, 127))) << size;
  }
  // The slot takes its share of the room.
  host_.uptime = 20L * 123456;
  const std::string address(125, '1');
  EXPECT_EQ(generate_StarterKey(address.c_str()), Md5Text(("123456" + address).substr(0, 127)));
}

TEST_F(StarterKeyTest, NothingIsLogged) {
  log_file::Start(7);
  generate_StarterKey("10.1.1.2");
  generate_BKey("10.1.1.2");
  MD5Encryption("text");
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(StarterKeyTest, StoreIsReadOnceAndNeverWritten) {
  generate_StarterKey("10.1.1.2");
  const std::vector<StoreCall> expected = {
      {StoreCall::Kind::kGetText, "/sys/user:1/password", "pw"}};
  EXPECT_EQ(host_.calls(), expected);
}

}  // namespace
}  // namespace kio::test
