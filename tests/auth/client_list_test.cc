// Who is in the list, who passes, and until when.
#include "auth_fixture.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;

class ClientListTest : public AuthTest {};

TEST_F(ClientListTest, NewClientGoesToTheEndWithAllThatIsKnown) {
  host_.uptime = 5000;
  sandbox_.time = 1'700'000'000;
  sandbox_.random = 0xABC;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "admin", "secret", "text", 1), 1);
  const ClientAuthInfo* const first = clientauthinfo;
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(cur_authinfo, first);
  EXPECT_EQ(first->next, nullptr);
  EXPECT_STREQ(first->ip, "10.1.1.2");
  EXPECT_STREQ(first->username, "admin");
  EXPECT_STREQ(first->password, "secret");
  EXPECT_STREQ(first->sessionid, "00000abc");
  EXPECT_EQ(first->logout, 5300U);
  EXPECT_THAT(sandbox_.seeds, ElementsAre(1'700'000'000U));

  sandbox_.random = 0x7FFFFFFF;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.3", "user", "pw", nullptr, 2), 1);
  EXPECT_EQ(clientauthinfo, first);
  EXPECT_EQ(first->next, cur_authinfo);
  EXPECT_STREQ(cur_authinfo->sessionid, "7fffffff");
  EXPECT_STREQ(cur_authinfo->username, "user");
  EXPECT_EQ(cur_authinfo->logout, 5300U);
  EXPECT_EQ(cur_authinfo->next, nullptr);
}

TEST_F(ClientListTest, SessionsOfOneSecondAreSeededAlike) {
  // Quirk "session-from-the-clock"
  Add("10.1.1.2", 1);
  Add("10.1.1.3", 1);
  EXPECT_THAT(sandbox_.seeds, ElementsAre(1'000'000'000U, 1'000'000'000U));
  EXPECT_STREQ(clientauthinfo->sessionid, cur_authinfo->sessionid);
}

TEST_F(ClientListTest, SecondLoginByAddressOnlyLastsLonger) {
  const ClientAuthInfo* const first = Add("10.1.1.2", 1);
  const ClientAuthInfo* const second = Add("10.1.1.3", 2);
  sandbox_.seeds.clear();
  host_.uptime = 1250;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "other", "other", nullptr, 1), 0);
  EXPECT_EQ(first->logout, 1550U);
  EXPECT_EQ(second->logout, 1300U);
  EXPECT_STREQ(first->username, "admin");
  EXPECT_STREQ(first->password, "secret");
  EXPECT_STREQ(first->sessionid, "00000001");
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2", "10.1.1.3"));
  EXPECT_THAT(sandbox_.seeds, ElementsAre());
  // Only a client that is added becomes the current one.
  EXPECT_EQ(cur_authinfo, second);
}

TEST_F(ClientListTest, SecondLoginRevivesALapsedClient) {
  ClientAuthInfo* const client = Add("10.1.1.2", 1);
  host_.uptime = 9000;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "admin", "secret", nullptr, 1), 0);
  EXPECT_EQ(client->logout, 9300U);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), 0);
}

TEST_F(ClientListTest, OfTwoWithOneAddressTheFirstLastsLonger) {
  const ClientAuthInfo* const first = Add("10.1.1.2", 1, KIOAPP_MATCH_SESSION);
  const ClientAuthInfo* const second = Add("10.1.1.2", 2, KIOAPP_MATCH_SESSION);
  host_.uptime = 1100;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "admin", "secret", nullptr, 1), 0);
  EXPECT_EQ(first->logout, 1400U);
  EXPECT_EQ(second->logout, 1300U);
}

TEST_F(ClientListTest, SecondLoginBySessionChangesNothing) {
  const ClientAuthInfo* const client = Add("10.1.1.2", 0xBEEF, KIOAPP_MATCH_SESSION);
  host_.uptime = 1100;
  for (const int mode : {0, 2, -1, 77}) {
    EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "a", "b", "session=0000beef;", mode),
              0);
  }
  EXPECT_EQ(client->logout, 1300U);
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2"));
}

TEST_F(ClientListTest, BySessionAddressSessionAndRequestMustFit) {
  for (const char* const request : {static_cast<const char*>(nullptr), "", "0000bee", "0000BEEF"}) {
    Add("10.1.1.2", 0xBEEF, KIOAPP_MATCH_SESSION);
    EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "a", "b", request, 2), 1);
    EXPECT_EQ(clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0), 0);
  }
  Add("10.1.1.2", 0xBEEF, KIOAPP_MATCH_SESSION);
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.3", "a", "b", "0000beef", 2), 1);
}

TEST_F(ClientListTest, ModeZeroAddsALapsedClient) {
  // Quirk "mode-zero-adds-lapsed"
  const ClientAuthInfo* const client = Add("10.1.1.2", 1, KIOAPP_MATCH_LAPSED);
  EXPECT_EQ(client->logout, 0U);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1);
  EXPECT_EQ(clientauthinfo, nullptr);

  host_.uptime = 0;
  Add("10.1.1.2", 1, KIOAPP_MATCH_LAPSED);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1);
}

TEST_F(ClientListTest, AnyOtherModeThanZeroLogsIn) {
  for (const int mode : {1, 2, -1, 1000}) {
    EXPECT_EQ(Add("10.1.1." + std::to_string(mode), 1, mode)->logout, 1300U);
  }
}

TEST_F(ClientListTest, WithoutMemoryNothingIsAddedAndOneIsTold) {
  // Quirk "added-without-memory"
  const ClientAuthInfo* const first = Add("10.1.1.2", 1);
  sandbox_.calloc_fails = true;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, "10.1.1.3", "admin", "secret", nullptr, 1), 1);
  sandbox_.calloc_fails = false;
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2"));
  EXPECT_EQ(cur_authinfo, first);
}

TEST_F(ClientListTest, LongTextsAreCutAndTerminated) {
  const std::string ip(127, 'i');
  const std::string username(63, 'u');
  const std::string password(63, 'p');
  for (const char* const more : {"", "x", "xyz"}) {
    EXPECT_EQ(clientAuthListAdd(&clientauthinfo, (ip + more).c_str(), (username + more).c_str(),
                                (password + more).c_str(), nullptr, 2),
              1);
    EXPECT_EQ(cur_authinfo->ip, ip);
    EXPECT_EQ(cur_authinfo->username, username);
    EXPECT_EQ(cur_authinfo->password, password);
    EXPECT_STREQ(cur_authinfo->sessionid, "0012abcd");
    EXPECT_EQ(cur_authinfo->logout, 1300U);
  }
}

TEST_F(ClientListTest, AddressThatWasCutIsNotFound) {
  // Quirk "address-cut-is-not-found"
  const std::string ip(128, 'i');
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, ip.c_str(), "admin", "secret", nullptr, 1), 1);
  EXPECT_EQ(check_StarterAuthIP(ip.c_str(), nullptr), -1);
  EXPECT_EQ(check_StarterAuthIP(ip.substr(0, 127).c_str(), nullptr), 0);
}

TEST_F(ClientListTest, OtherListsThanTheGlobalOneAreServedToo) {
  ClientAuthInfo* mine = nullptr;
  Add("10.1.1.2", 1);
  EXPECT_EQ(clientAuthListAdd(&mine, "10.1.1.3", "admin", "secret", nullptr, 1), 1);
  EXPECT_EQ(cur_authinfo, mine);
  EXPECT_EQ(checkClientAuthIp(mine, "10.1.1.3", nullptr, 1), mine);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.3", nullptr), -1);
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2"));
  EXPECT_EQ(clientAuthListDel(&mine, nullptr, nullptr, 1), 0);
  EXPECT_EQ(mine, nullptr);
}

TEST_F(ClientListTest, LookUpByAddressTakesTheFirst) {
  Add("10.1.1.1", 1);
  const ClientAuthInfo* const first = Add("10.1.1.2", 2, KIOAPP_MATCH_SESSION);
  const ClientAuthInfo* const second = Add("10.1.1.2", 3, KIOAPP_MATCH_SESSION);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", "00000003", 1), first);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", "00000003", 2), second);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", "00000003", 0), second);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", "x00000002y00000003", 2), first);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", nullptr, 2), nullptr);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", "", 2), nullptr);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.1", "00000002", 2), nullptr);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1", nullptr, 1), nullptr);
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.22", nullptr, 1), nullptr);
  EXPECT_EQ(checkClientAuthIp(nullptr, "10.1.1.2", "00000003", 1), nullptr);
  EXPECT_EQ(cur_authinfo, second) << "a look-up leaves the current client alone";
}

TEST_F(ClientListTest, LookUpFindsLapsedClientsToo) {
  const ClientAuthInfo* const client = Add("10.1.1.2", 1);
  host_.uptime = 100000;
  EXPECT_EQ(checkClientAuthIp(clientauthinfo, "10.1.1.2", nullptr, 1), client);
  EXPECT_EQ(client->logout, 1300U);
}

TEST_F(ClientListTest, RequestWithinThreeHundredSecondsPassesAndExtends) {
  ClientAuthInfo* const client = Add("10.1.1.2", 1);
  Add("10.1.1.3", 2);
  host_.uptime = 1299;
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), 0);
  EXPECT_EQ(cur_authinfo, client);
  EXPECT_EQ(client->logout, 1599U);
  host_.uptime = 1598;
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", "any text"), 0);
  EXPECT_EQ(client->logout, 1898U);
}

TEST_F(ClientListTest, RequestAfterThreeHundredSecondsIsRefusedAndTheClientRemoved) {
  for (const long uptime : {1300L, 1301L, 90000L}) {
    host_.uptime = 1000;
    Add("10.1.1.1", 1);
    Add("10.1.1.2", 2);
    host_.uptime = uptime;
    EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1);
    EXPECT_THAT(Addresses(), ElementsAre("10.1.1.1"));
    EXPECT_EQ(cur_authinfo, nullptr);
    EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1);
    EXPECT_EQ(clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0), 0);
  }
}

TEST_F(ClientListTest, ThreeHundredSecondsHoldAtAnyUptime) {
  for (const long start : PossibleUptimes(
           {0, 1, 2147483000, 2147483347, 2147483348, 2147483647, 2147483648, 4294966000}, 599)) {
    host_.uptime = start;
    Add("10.1.1.2", 1);
    host_.uptime = start + 299;
    EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), 0) << start;
    EXPECT_EQ(cur_authinfo->logout, static_cast<unsigned>(start + 599)) << start;
    host_.uptime = start + 599;
    EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1) << start;
    EXPECT_EQ(clientauthinfo, nullptr) << start;
  }
}

TEST_F(ClientListTest, UnknownAddressIsRefused) {
  Add("10.1.1.2", 1);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.3", "00000001"), -1);
  EXPECT_EQ(cur_authinfo, nullptr);
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2"));
  EXPECT_EQ(check_StarterAuthIP("", nullptr), -1);
  EXPECT_EQ(check_StarterAuthIP(nullptr, nullptr), -1);
  EXPECT_EQ(clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0), 0);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1);
}

// Of two clients with one address the first decides, and is the one that goes.
TEST_F(ClientListTest, LapsedClientHidesALaterOneUntilItIsRemoved) {
  Add("10.1.1.2", 1, KIOAPP_MATCH_LAPSED);
  Add("10.1.1.2", 2, KIOAPP_MATCH_SESSION);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), -1);
  EXPECT_EQ(check_StarterAuthIP("10.1.1.2", nullptr), 0);
  EXPECT_STREQ(cur_authinfo->sessionid, "00000002");
}

TEST_F(ClientListTest, LogOfAnAddition) {
  Add("10.1.1.2", 0x1F);
  log_file::Start(7);
  Add("10.1.1.3", 0x20);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:clientAuthListAdd]\n"
            "1000: Add new node ip=10.1.1.3\n"
            "1000: 1000:printList]The Auth list is:\n"
            "1000: ip=10.1.1.2,username=admin, sessionid=0000001f-->"
            "ip=10.1.1.3,username=admin, sessionid=00000020-->NULL \n\n");
}

TEST_F(ClientListTest, LogOfAnAdditionAtLevelSix) {
  log_file::Start(6);
  Add("10.1.1.2", 0x1F);
  EXPECT_EQ(log_file::Contents(),
            "1000: Add new node ip=10.1.1.2\n"
            "1000: ip=10.1.1.2,username=admin, sessionid=0000001f-->NULL \n\n");
}

TEST_F(ClientListTest, AdditionToAnotherListLogsTheGlobalOne) {
  log_file::Start(7);
  ClientAuthInfo* mine = nullptr;
  clientAuthListAdd(&mine, "10.1.1.3", "admin", "secret", nullptr, 1);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:clientAuthListAdd]\n"
            "1000: Add new node ip=10.1.1.3\n"
            "1000: 1000:printList]Auth list is empty.\n");
  clientAuthListDel(&mine, nullptr, nullptr, 1);
}

TEST_F(ClientListTest, LogOfASecondLoginIsItsEntry) {
  Add("10.1.1.2", 1);
  log_file::Start(7);
  clientAuthListAdd(&clientauthinfo, "10.1.1.2", "admin", "secret", nullptr, 1);
  EXPECT_EQ(log_file::Contents(), "1000: 1000:clientAuthListAdd]\n");
}

TEST_F(ClientListTest, LogOfALookUp) {
  Add("10.1.1.2", 1);
  log_file::Start(7);
  checkClientAuthIp(clientauthinfo, "10.1.1.2", nullptr, 1);
  EXPECT_EQ(log_file::Contents(), "1000: 1000:checkClientAuthIp]\n");
}

TEST_F(ClientListTest, LogOfARequestThatPasses) {
  Add("10.1.1.2", 1);
  host_.uptime = 1010;
  log_file::Start(7);
  check_StarterAuthIP("10.1.1.2", nullptr);
  // The empty message behind the name ends no line.
  EXPECT_EQ(log_file::Contents(),
            "1010: 1010:check_StarterAuthIP]1010:checkClientAuthIp]\n"
            "1010: Auth Client IP, logout=1310\n");
}

TEST_F(ClientListTest, LogOfRequestsThatAreRefused) {
  Add("10.1.1.2", 1);
  log_file::Start(7);
  check_StarterAuthIP("10.1.1.3", nullptr);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:check_StarterAuthIP]1000:checkClientAuthIp]\n"
            "1000: UnAuth Rss Client IP!\n");
  host_.uptime = 1300;
  log_file::Start(7);
  check_StarterAuthIP("10.1.1.2", nullptr);
  EXPECT_EQ(log_file::Contents(),
            "1300: 1300:check_StarterAuthIP]1300:checkClientAuthIp]\n"
            "1300: 1300:clientAuthListDel]\n"
            "1300: 1 Delete IP 10.1.1.2 from list.\n"
            "1300: UnAuth Rss Client IP!\n");
}

TEST_F(ClientListTest, LogOfAnEmptyList) {
  log_file::Start(7);
  printList(nullptr);
  EXPECT_EQ(log_file::Contents(), "1000: 1000:printList]Auth list is empty.\n");
  log_file::Start(6);
  printList(nullptr);
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(ClientListTest, PercentSignsInTextsAreOrdinary) {
  log_file::Start(6);
  clientAuthListAdd(&clientauthinfo, "%s%n", "%d", "%x", nullptr, 1);
  EXPECT_EQ(log_file::Contents(),
            "1000: Add new node ip=%s%n\n"
            "1000: ip=%s%n,username=%d, sessionid=0012abcd-->NULL \n\n");
}

TEST_F(ClientListTest, WithoutAListNothingIsAdded) {
  EXPECT_EQ(clientAuthListAdd(nullptr, "10.1.1.2", "admin", "secret", nullptr, 1), 1);
  EXPECT_EQ(clientauthinfo, nullptr);
  EXPECT_EQ(cur_authinfo, nullptr);
  EXPECT_THAT(sandbox_.seeds, ElementsAre());
}

}  // namespace
}  // namespace kio::test
