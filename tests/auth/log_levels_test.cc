// The levels of the messages about clients and their keys.
#include "support/log_levels.h"

#include <filesystem>
#include <string>

#include "auth_fixture.h"

namespace kio::test {
namespace {

constexpr const char* kAddress = "192.168.1.2";

class AuthLevelsTest : public AuthTest {
 protected:
  ~AuthLevelsTest() override { log_file::Start(kEventLevel); }

  static void Empty() { clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0); }
  static void StartWithOne() {
    const int level = daemon_log_level;
    daemon_log_level = 0;
    Empty();
    Add(kAddress, 0xABC);
    daemon_log_level = level;
  }
  static void AddOne() {
    Empty();
    Add(kAddress, 0xABC);
  }
  static void RemoveByAddress() {
    StartWithOne();
    clientAuthListDel(&clientauthinfo, kAddress, nullptr, KIOAPP_MATCH_ADDRESS);
  }
  static void RemoveBySession() {
    StartWithOne();
    clientAuthListDel(&clientauthinfo, kAddress, "00000abc", KIOAPP_MATCH_SESSION);
  }
  static void Print() {
    StartWithOne();
    printList(clientauthinfo);
  }
  static void ShowGoodKey() {
    Empty();
    FakeHost::Get().Set("/sys/user:1/password", "secret");
    const std::string request = std::string("kioAppKey= ") + generate_StarterKey(kAddress);
    EXPECT_EQ(starter_auth_check(request.c_str(), kAddress, nullptr), 0);
  }
  static void ShowBadKey() {
    EXPECT_EQ(starter_auth_check("kioAppKey= 0123", kAddress, nullptr), -1);
  }
};

TEST_F(AuthLevelsTest, KeyCheck) {
  ExpectLevels({
      {"the key shown", ShowBadKey, kDetailLevel,
       "match_buff = 0123, kioApp_ip=192.168.1.2, time=1000\n"},
      {"the time before a success", ShowGoodKey, kEventLevel, kTimeBefore},
      {"a success", ShowGoodKey, kEventLevel, "starter key success, logout=1300\n"},
  });
}

TEST_F(AuthLevelsTest, AddingAndRemoving) {
  ExpectLevels({
      {"a new client", AddOne, kActionLevel, "Add new node ip=192.168.1.2\n"},
      {"a removal by address", RemoveByAddress, kDetailLevel,
       "1 Delete IP 192.168.1.2 from list.\n"},
      {"a removal by session", RemoveBySession, kDetailLevel,
       "1 Delete IP 192.168.1.2(00000abc) from list.\n"},
      {"a removal from nothing",
       [] {
         Empty();
         clientAuthListDel(&clientauthinfo, kAddress, nullptr, KIOAPP_MATCH_ADDRESS);
       },
       kActionLevel, "No IP to be deleted.\n"},
  });
}

TEST_F(AuthLevelsTest, Requests) {
  ExpectLevels({
      {"a known client",
       [] {
         StartWithOne();
         EXPECT_EQ(check_StarterAuthIP(kAddress, ""), 0);
       },
       kDetailLevel, "Auth Client IP, logout=1300\n"},
      {"a stranger", [] { EXPECT_EQ(check_StarterAuthIP("10.0.0.1", ""), -1); }, kDetailLevel,
       "UnAuth Rss Client IP!\n"},
  });
}

TEST_F(AuthLevelsTest, List) {
  ExpectLevels({
      {"an empty list", [] { printList(nullptr); }, kDetailLevel, "Auth list is empty.\n"},
      {"the head of a list", Print, kDetailLevel, "The Auth list is:\n"},
      {"a client", Print, kActionLevel, "ip=192.168.1.2,username=admin, sessionid=00000abc-->"},
      {"the end of a list", Print, kActionLevel, "NULL \n\n"},
  });
}

// The check of a request logs an empty message. It leaves no text; but where the file cannot be
// made, it alone is beyond every size and moves the file that is not there.
TEST_F(AuthLevelsTest, EmptyMessage) {
  StartWithOne();
  const std::string directory = daemon_log_path;
  std::filesystem::remove_all(directory);
  for (const int level : {kActionLevel, kDetailLevel}) {
    daemon_log_level = level;
    host_.ClearCommands();
    EXPECT_EQ(check_StarterAuthIP(kAddress, ""), 0);
    EXPECT_EQ(host_.commands().size(), level == kDetailLevel ? 2U : 0U) << level;
  }
  std::filesystem::create_directory(directory);
}

}  // namespace
}  // namespace kio::test
