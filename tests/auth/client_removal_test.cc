// Which client a removal takes, and what it leaves.
#include "auth_fixture.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;

class ClientRemovalTest : public AuthTest {
 protected:
  static int Delete(const char* ip, const char* request, int mode) {
    return clientAuthListDel(&clientauthinfo, ip, request, mode);
  }
};

TEST_F(ClientRemovalTest, EmptyListHasNothingToRemove) {
  log_file::Start(7);
  for (const char* const ip : {static_cast<const char*>(nullptr), "10.1.1.2"}) {
    EXPECT_EQ(Delete(ip, nullptr, 1), 0);
  }
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:clientAuthListDel]\n"
            "1000: No IP to be deleted.\n"
            "1000: 1000:clientAuthListDel]\n"
            "1000: No IP to be deleted.\n");
  log_file::Start(6);
  EXPECT_EQ(Delete("10.1.1.2", nullptr, 1), 0);
  EXPECT_EQ(log_file::Contents(), "1000: No IP to be deleted.\n");
}

TEST_F(ClientRemovalTest, NullAddressRemovesAllAndTellsNone) {
  for (const int mode : {0, 1, 2}) {
    Add("10.1.1.1", 1);
    Add("10.1.1.2", 2);
    Add("10.1.1.3", 3);
    EXPECT_EQ(Delete(nullptr, "00000002", mode), 0);
    EXPECT_EQ(clientauthinfo, nullptr);
    EXPECT_EQ(cur_authinfo, nullptr);
  }
}

TEST_F(ClientRemovalTest, RemovalOfAllLogsWhatIsLeftEachTime) {
  Add("a", 1);
  Add("b", 2);
  log_file::Start(7);
  Delete(nullptr, nullptr, 1);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:clientAuthListDel]\n"
            "1000: 1000:printList]The Auth list is:\n"
            "1000: ip=a,username=admin, sessionid=00000001-->"
            "ip=b,username=admin, sessionid=00000002-->NULL \n\n"
            "1000: 1000:printList]The Auth list is:\n"
            "1000: ip=b,username=admin, sessionid=00000002-->NULL \n\n");
}

TEST_F(ClientRemovalTest, ByAddressTheFirstWithItGoes) {
  Add("10.1.1.1", 1);
  Add("10.1.1.2", 2, KIOAPP_MATCH_SESSION);
  Add("10.1.1.2", 3, KIOAPP_MATCH_SESSION);
  Add("10.1.1.4", 4);
  log_file::Start(7);
  EXPECT_EQ(Delete("10.1.1.2", "00000003", 1), 1);
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.1", "10.1.1.2", "10.1.1.4"));
  EXPECT_STREQ(clientauthinfo->next->sessionid, "00000003");
  EXPECT_EQ(Delete("10.1.1.4", nullptr, 1), 1);
  EXPECT_EQ(Delete("10.1.1.1", nullptr, 1), 1);
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2"));
  EXPECT_EQ(Delete("10.1.1.2", nullptr, 1), 1);
  EXPECT_EQ(clientauthinfo, nullptr);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:clientAuthListDel]\n"
            "1000: 2 Delete IP 10.1.1.2 from list.\n"
            "1000: 1000:clientAuthListDel]\n"
            "1000: 2 Delete IP 10.1.1.4 from list.\n"
            "1000: 1000:clientAuthListDel]\n"
            "1000: 1 Delete IP 10.1.1.1 from list.\n"
            "1000: 1000:clientAuthListDel]\n"
            "1000: 1 Delete IP 10.1.1.2 from list.\n");
}

TEST_F(ClientRemovalTest, ByAddressNoOtherGoes) {
  Add("10.1.1.1", 1);
  Add("10.1.1.2", 2);
  for (const char* const ip : {"", "10.1.1", "10.1.1.22", "10.1.1.3"}) {
    EXPECT_EQ(Delete(ip, nullptr, 1), 0);
    EXPECT_EQ(Delete(ip, "00000001", 1), 0);
  }
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.1", "10.1.1.2"));
}

TEST_F(ClientRemovalTest, BySessionTheFirstClientMustMatchWhole) {
  for (const int mode : {0, 2, -1}) {
    Add("10.1.1.1", 0xA1);
    for (const char* const request : {static_cast<const char*>(nullptr), "", "000000a2"}) {
      EXPECT_EQ(Delete("10.1.1.1", request, mode), 0);
    }
    EXPECT_EQ(Delete("10.1.1.2", "000000a1", mode), 0);
    log_file::Start(7);
    EXPECT_EQ(Delete("10.1.1.1", "x000000a1y", mode), 1);
    EXPECT_EQ(log_file::Contents(),
              "1000: 1000:clientAuthListDel]\n"
              "1000: 1 Delete IP 10.1.1.1(000000a1) from list.\n");
    EXPECT_EQ(clientauthinfo, nullptr);
  }
}

// What is removed of a list of three whose first client stays.
struct Behind {
  const char* ip;
  const char* request;
  int result;
  std::vector<std::string> left;
};

TEST_F(ClientRemovalTest, BySessionLaterClientsGoByOtherSessions) {
  // Quirk "later-clients-go-by-other-sessions"
  const std::vector<std::string> all = {"a", "b", "c"};
  const Behind rows[] = {
      // without a request, the next one, whoever it is
      {"z", nullptr, 1, {"a", "c"}},
      {"c", nullptr, 1, {"a", "c"}},
      {"a", nullptr, 1, {"a", "c"}},
      // the first whose session is not in the request
      {"z", "", 1, {"a", "c"}},
      {"z", "0000000c", 1, {"a", "c"}},
      {"z", "0000000b", 1, {"a", "b"}},
      {"a", "0000000b", 1, {"a", "b"}},
      // the first with the address, even with its session in the request
      {"b", "0000000b", 1, {"a", "c"}},
      {"b", "0000000b0000000c", 1, {"a", "c"}},
      {"c", "0000000b0000000c", 1, {"a", "b"}},
      {"c", "0000000b", 1, {"a", "b"}},
      // an earlier one of another session comes first
      {"c", "0000000c", 1, {"a", "c"}},
      // all are passed over
      {"z", "0000000b, 0000000c", 0, all},
      {"a", "0000000b, 0000000c", 0, all},
  };
  for (const int mode : {0, 2}) {
    for (const Behind& row : rows) {
      Add("a", 0xA);
      Add("b", 0xB);
      Add("c", 0xC);
      EXPECT_EQ(Delete(row.ip, row.request, mode), row.result);
      EXPECT_EQ(Addresses(), row.left)
          << row.ip << " " << (row.request == nullptr ? "(none)" : row.request);
      Delete(nullptr, nullptr, 1);
    }
  }
}

TEST_F(ClientRemovalTest, LogOfALaterClientBySession) {
  Add("a", 0xA);
  Add("b", 0xB);
  log_file::Start(7);
  EXPECT_EQ(Delete("b", "0000000b", 2), 1);
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:clientAuthListDel]\n"
            "1000: 2 Delete IP b(0000000b) from list.\n");
}

TEST_F(ClientRemovalTest, CurrentClientIsForgottenWhenItGoes) {
  const ClientAuthInfo* const first = Add("a", 1);
  Add("b", 2);
  EXPECT_EQ(Delete("b", nullptr, 1), 1);
  EXPECT_EQ(cur_authinfo, nullptr);
  EXPECT_EQ(check_StarterAuthIP("a", nullptr), 0);
  EXPECT_EQ(cur_authinfo, first);
  EXPECT_EQ(Delete("a", nullptr, 1), 1);
  EXPECT_EQ(cur_authinfo, nullptr);
}

TEST_F(ClientRemovalTest, CurrentClientStaysWhenAnotherGoes) {
  Add("a", 1);
  const ClientAuthInfo* const second = Add("b", 2);
  EXPECT_EQ(Delete("a", nullptr, 1), 1);
  EXPECT_EQ(cur_authinfo, second);
  ClientAuthInfo* mine = nullptr;
  clientAuthListAdd(&mine, "c", "admin", "secret", nullptr, 1);
  EXPECT_EQ(cur_authinfo, mine);
  Delete(nullptr, nullptr, 1);
  EXPECT_EQ(cur_authinfo, mine);
  clientAuthListDel(&mine, nullptr, nullptr, 1);
  EXPECT_EQ(cur_authinfo, nullptr);
}

// The arguments may lie in the client that goes.
TEST_F(ClientRemovalTest, AddressOfTheClientItself) {
  Add("a", 1);
  Add("b", 2);
  EXPECT_EQ(Delete(cur_authinfo->ip, cur_authinfo->sessionid, 2), 1);
  EXPECT_EQ(Delete(clientauthinfo->ip, nullptr, 1), 1);
  EXPECT_EQ(clientauthinfo, nullptr);
}

TEST_F(ClientRemovalTest, PasswordIsClearedBeforeTheMemoryIsGivenBack) {
  const std::string cleared(64, '\0');
  sandbox_.watched = Add("a", 1);
  EXPECT_EQ(Delete("a", nullptr, 1), 1);
  EXPECT_EQ(sandbox_.freed_password, cleared);
  Add("a", 1);
  sandbox_.watched = Add("b", 2);
  sandbox_.freed_password.clear();
  EXPECT_EQ(Delete("b", nullptr, 2), 1);
  EXPECT_EQ(sandbox_.freed_password, cleared);
  sandbox_.watched = clientauthinfo;
  sandbox_.freed_password.clear();
  Delete(nullptr, nullptr, 1);
  EXPECT_EQ(sandbox_.freed_password, cleared);
}

TEST_F(ClientRemovalTest, WithoutAListNothingIsRemoved) {
  Add("10.1.1.2", 1);
  EXPECT_EQ(clientAuthListDel(nullptr, "10.1.1.2", nullptr, 1), 0);
  EXPECT_EQ(clientAuthListDel(nullptr, nullptr, nullptr, 1), 0);
  EXPECT_THAT(Addresses(), ElementsAre("10.1.1.2"));
}

}  // namespace
}  // namespace kio::test
