// The variables over HTTP: values, codes, names, batches and the catalogue.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class VariablesTest : public ::testing::Test {
 protected:
  void Start(const std::vector<std::string>& profile_lines = {}) {
    host_.UseProfile(ProfileWith(profile_lines));
    ASSERT_TRUE(host_.Start());
  }

  HttpResponse Read(const std::string& name) const { return Get(host_.port(), "/vars/" + name); }
  HttpResponse Set(const std::string& name, const std::string& value) const {
    return Put(host_.port(), "/vars/" + name, value);
  }
  HttpResponse Check(const std::string& name, const std::string& value) const {
    return Post(host_.port(), "/vars/" + name + "/validate", value);
  }
  HttpResponse Batch(const std::string& batch, const std::string& query = "") const {
    return Post(host_.port(), "/vars" + query, batch);
  }
  HttpResponse Act(const std::string& action, const std::string& body = "") const {
    return Post(host_.port(), "/actions/" + action, body);
  }

  HostProcess host_;
};

void ExpectReply(const HttpResponse& answer, int status, const std::string& body) {
  EXPECT_EQ(answer.status, status);
  EXPECT_EQ(answer.body, body);
  EXPECT_EQ(answer.Header("Content-Type"), "text/plain; charset=utf-8");
}

TEST_F(VariablesTest, EveryVariableReadsAsTheStoreHasIt) {
  Start();
  const auto catalogue = nlohmann::json::parse(Get(host_.port(), "/vars").body);
  int compared = 0;
  int absent = 0;
  for (const auto& variable : catalogue["variables"]) {
    const auto name = variable["name"].get<std::string>();
    if (variable.contains("index")) {
      continue;  // this profile has neither sites nor, as the library counts them, rules
    }
    const HttpResponse answer = Read(name);
    EXPECT_EQ(answer.status, 200) << name;
    if (variable["storeNode"].is_null()) {
      EXPECT_EQ(answer.body, "-1") << name;
      continue;
    }
    const std::string node = host_.Node(variable["storeNode"].get<std::string>());
    if (node != "(absent)") {
      EXPECT_EQ(answer.body, node) << name;
      ++compared;
    } else {
      EXPECT_THAT(answer.body, MatchesRegex("|-1")) << name;
      ++absent;
    }
  }
  EXPECT_GE(compared, 60);
  EXPECT_GE(absent, 5);
}

TEST_F(VariablesTest, IndexedVariablesExistAsFarAsTheyAreCounted) {
  Start({"/lan/wireless5:1/configurable/acrule:1 = x",
         "/wirelesssitesurvey/site:1/bssid = 02:00:5E:00:00:01",
         "/wirelesssitesurvey/site:2/bssid = 02:00:5E:00:00:02"});
  EXPECT_EQ(Read("rss_Wl5_Acl_AcRuleNo").body, "1");
  EXPECT_EQ(Read("rss_Wl5_Acl_R00_Active").status, 200);
  EXPECT_EQ(Read("rss_Wl5_Acl_R01_MAC").status, 404);
  EXPECT_EQ(Read("rss_Wl2_Acl_R00_MAC").status, 404);
  EXPECT_EQ(Read("rss_Ext_Ssv_SiteNo").body, "2");
  EXPECT_EQ(Read("rss_Ext_Ssv_S00_BSSID").body, "02:00:5E:00:00:02");
  EXPECT_EQ(Read("rss_Ext_Ssv_S02_BSSID").status, 404);
}

TEST_F(VariablesTest, TheCatalogueIsThatOfTheDocumentationAndTellsWhatMayBeChanged) {
  Start({"/lan/wireless5:1/configurable = 0"});
  const HttpResponse answer = Get(host_.port(), "/vars");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.Header("Content-Type"), "application/json");
  auto catalogue = nlohmann::ordered_json::parse(answer.body);
  int changeable = 0;
  for (auto& variable : catalogue["variables"]) {
    const auto name = variable["name"].get<std::string>();
    const bool expected = variable["access"]["write"].get<bool>() && !name.starts_with("rss_Wl5");
    EXPECT_EQ(variable["changeableNow"], expected) << name;
    changeable += expected ? 1 : 0;
    variable.erase("changeableNow");
  }
  EXPECT_GT(changeable, 30);
  EXPECT_EQ(catalogue, nlohmann::ordered_json::parse(ReadFile(KIO_DOCS_DIR "/variables.json")));
}

TEST_F(VariablesTest, AValueIsItsTextAndNothingElse) {
  Start();
  ExpectReply(Read("rss_DeviceName"), 200, "Home router");
  ExpectReply(Read("rss_Upl_LoginUserName"), 200, "");
  ExpectReply(Read("rss_DeviceName?path=0"), 200, "Home router");
  ExpectReply(Read("rss_DeviceName?path=1"), 200, "/sys/friendlyname");
  ExpectReply(Read("rss_Upl_DNS?path=1"), 200, "192.0.2.1");
  ExpectReply(Read("rss_DeviceName?path=2"), 400, "path takes 0 or 1\n");
}

TEST_F(VariablesTest, DocumentPathsStandForNames) {
  Start();
  for (const char* name :
       {"%2FDevice%2FDeviceName", "/Device/DeviceName", "Device/DeviceName", "Device%2FDeviceName",
        "/Device%2fDeviceName", "abc_DeviceName", "%72ss_DeviceName", "Device/DeviceName%20"}) {
    EXPECT_EQ(Read(name).body, "Home router") << name;
  }
  ExpectReply(Set("Device/Wireless2.4/WirelessName", "Sofa"), 200, "0 done\n");
  EXPECT_EQ(Read("rss_Wl2_WirelessName").body, "Sofa");
  ExpectReply(Check("Device/UpLinkConnection/IP", "192.0.2.300"), 422,
              "2 not a value that this takes\n");
  EXPECT_EQ(Read("Device/Wireless5/AccessControl/WlAcLists/AcRule%23").body, "-1");
  EXPECT_EQ(Read("Device/UpLinkConnection/IP?path=1").body, "/uplink/IP");
}

TEST_F(VariablesTest, WhatIsNoVariableIsNotFound) {
  Start();
  for (const char* name :
       {"rss_", "rss_Nothing", "rss_DeviceName_", "devicename", "a", "rss_Wl2_Acl_R",
        "rss_Ext_Ssv_S0", "Foo/X", "/", "Device/UpLinkConnection/DSL/X/Y", "%25s%25n",
        "rss_Upl_IP%0A", "rss_Act_", "rss_Act_CommitRssVars", "abc_Act_CommitRssVars",
        "rss_Actor_CommitRssVars", "Device/Act_CommitRssVars"}) {
    ExpectReply(Read(name), 404, "2 no such variable\n");
    ExpectReply(Set(name, "1"), 404, "2 no such variable\n");
    ExpectReply(Check(name, "1"), 404, "2 no such variable\n");
  }
  EXPECT_EQ(Get(host_.port(), "/vars/").status, 404);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Upl_IP%00x").status, 400);
}

TEST_F(VariablesTest, EachCodeHasItsStatus) {
  Start({"/lan/wireless5:1/configurable = 0", "/sys/friendlyname_validate = 1,100,5"});
  ExpectReply(Set("rss_DeviceName", "50"), 200, "0 done\n");
  ExpectReply(Check("rss_DeviceName", "50"), 200, "0 done\n");
  // 1: the section cannot be configured; whatever follows its prefix.
  ExpectReply(Set("rss_Wl5_Channel", "36"), 403, "1 the section is not configurable\n");
  ExpectReply(Set("rss_Wl5_Nothing", "36"), 403, "1 the section is not configurable\n");
  ExpectReply(Check("rss_Wl5_Channel", "36"), 200, "0 done\n");
  // 2: a bad value of a variable that there is.
  ExpectReply(Set("rss_Upl_IP", "192.0.2"), 422, "2 not a value that this takes\n");
  ExpectReply(Set("rss_Wl2_Channel", "99"), 422, "2 not a value that this takes\n");
  ExpectReply(Set("rss_DeviceModel", "X"), 422, "2 not a value that this takes\n");
  ExpectReply(Check("rss_Wl2_EncryptionMode", "WPA2"), 422, "2 not a value that this takes\n");
  // 3: a batch that does not pass as a whole.
  ExpectReply(Batch("rss_Wl2_EncryptionKey=short"), 422,
              "3 a value is invalid or cannot be changed: "
              "Device/Wireless2.4/EncryptionKey\n");
  // 10: not a word; and too short.
  const std::string length = "10 the length is out of range, or not one of the words\n";
  ExpectReply(Set("rss_Wl2_EncryptionMode", "WPA9"), 422, length);
  ExpectReply(Check("rss_Wl2_EncryptionMode", "WPA9"), 422, length);
  ExpectReply(Set("rss_DevicePwd", "abcd"), 422, length);
  ExpectReply(Set("rss_DevicePwd", "abcd e"), 422, "11 a character is not allowed\n");
  ExpectReply(Set("rss_DeviceName", "101"), 422, "20 a number is above its maximum\n");
  ExpectReply(Set("rss_DeviceName", "4"), 422, "21 a number is below its minimum\n");
}

TEST_F(VariablesTest, AValueHas127CharactersAtMost) {
  Start();
  const std::string longest(127, 'x');
  const std::string too_long = "10 a value has at most 127 characters\n";
  EXPECT_EQ(Set("rss_Upl_Dsl_IspName", longest).status, 200);
  EXPECT_EQ(Read("rss_Upl_Dsl_IspName").body, longest);
  ExpectReply(Set("rss_Upl_Dsl_IspName", longest + "x"), 422, too_long);
  ExpectReply(Check("rss_Upl_Dsl_IspName", std::string(65536, 'x')), 422, too_long);
  EXPECT_EQ(Set("rss_Upl_Dsl_IspName", std::string(65537, 'x')).status, 413);
  EXPECT_EQ(Read("rss_Upl_Dsl_IspName").body, longest);
  ExpectReply(Set("rss_Upl_Dsl_IspName", ""), 200, "0 done\n");
  EXPECT_EQ(Read("rss_Upl_Dsl_IspName").body, "");
  ExpectReply(Set("rss_Upl_Dsl_IspName", "%s%n$(touch x)\r\n"), 200, "0 done\n");
  EXPECT_EQ(Read("rss_Upl_Dsl_IspName").body, "%s%n$(touch x)\r\n");
  ExpectReply(Set("rss_Upl_Dsl_IspName", std::string("a\0b", 3)), 400,
              "the value holds a NUL byte\n");
}

TEST_F(VariablesTest, SettingReachesTheRecordOnly) {
  Start();
  const std::string before = host_.Dump();
  EXPECT_EQ(Set("rss_DeviceName", "Attic").status, 200);
  EXPECT_EQ(Batch("rss_Wl2_WirelessName=Sofa&rss_Upl_ConnType=Static").status, 200);
  EXPECT_EQ(Act("SetRssVars", "rss_Wl5_WirelessName=Bed").status, 200);
  EXPECT_EQ(Read("rss_DeviceName").body + Read("rss_Wl2_WirelessName").body +
                Read("rss_Wl5_WirelessName").body + Read("rss_Upl_ConnType").body,
            "AtticSofaBedStatic");
  EXPECT_EQ(host_.Dump(), before);
}

TEST_F(VariablesTest, ABatchTakesItsSeparator) {
  Start();
  ExpectReply(Batch("rss_DeviceName = A&b \r\n rss_Wl2_WirelessName=C=d;;rss_Wl5_WirelessName=E",
                    "?separator=;"),
              200, "0 done\n");
  EXPECT_EQ(Read("rss_DeviceName").body, "A&b");
  EXPECT_EQ(Read("rss_Wl2_WirelessName").body, "C=d");
  EXPECT_EQ(Read("rss_Wl5_WirelessName").body, "E");
  ExpectReply(Batch("rss_DeviceName=F&rss_Wl2_WirelessName=G", "?separator=%26"), 200, "0 done\n");
  EXPECT_EQ(Read("rss_DeviceName").body + Read("rss_Wl2_WirelessName").body, "FG");
  for (const char* query : {"?separator=", "?separator", "?separator=ab", "?separator=%00"}) {
    ExpectReply(Batch("rss_DeviceName=H", query), 400, "separator takes one character\n");
  }
  EXPECT_EQ(Read("rss_DeviceName").body, "F");
}

TEST_F(VariablesTest, ABatchStopsAtTheVariableThatIsRefused) {
  Start();
  ExpectReply(Batch("rss_DeviceName=One&rss_Upl_IP=x&rss_Wl2_WirelessName=Two"), 422,
              "2 not a value that this takes: rss_Upl_IP\n");
  EXPECT_EQ(Read("rss_DeviceName").body, "One");
  EXPECT_EQ(Read("rss_Wl2_WirelessName").body, "HomeNet");
  EXPECT_THAT(Get(host_.port(), "/result").body, HasSubstr("<RssSetMsg>rss_Upl_IP</RssSetMsg>"));
  ExpectReply(Batch("rss_DeviceName=Two&rss_Nothing=1"), 404, "2 no such variable: rss_Nothing\n");
  ExpectReply(Act("SetRssVars", "rss_DeviceName=Three&x&y=1"), 404, "2 no such variable: x&y\n");
  EXPECT_EQ(Read("rss_DeviceName").body, "Three");
  ExpectReply(Batch(std::string(40, 'n') + "=1"), 404,
              "2 no such variable: " + std::string(31, 'n') + "\n");
}

TEST_F(VariablesTest, ABatchMayHave64KiB) {
  Start();
  std::string batch;
  while (batch.size() < 65000) {
    batch += "rss_Upl_Dsl_IspName=" + std::string(127, 'x') + "&";
  }
  batch += "rss_DeviceName=Last";
  batch.resize(65536, '&');
  ExpectReply(Batch(batch), 200, "0 done\n");
  EXPECT_EQ(Read("rss_DeviceName").body, "Last");
  ExpectReply(Act("SetRssVars", batch), 200, "0 done\n");
  ExpectReply(Batch(batch + "&"), 413, "a document has at most 65536 bytes\n");
  ExpectReply(Batch(std::string("rss_DeviceName=a\0b", 18)), 400, "the batch holds a NUL byte\n");
  ExpectReply(Batch(""), 200, "0 done\n");
  ExpectReply(Batch("no pair"), 200, "0 done\n");
}

TEST_F(VariablesTest, NoNameReachesAShell) {
  Start();
  const std::string before = host_.Dump();
  const std::string file = host_.dir().File("oops");
  for (const std::string& name :
       {"';touch " + file + ";'", "`touch " + file + "`", "$(touch " + file + ")",
        "\";touch " + file + ";\"", std::string("%s%n%s%n"), "a|touch " + file + "|b"}) {
    const HttpResponse answer = Batch(name + "=1");
    EXPECT_EQ(answer.status, 404) << name;
    EXPECT_THAT(answer.body, HasSubstr(name.substr(0, 31)));
    EXPECT_EQ(ReadFile(file), "");
  }
  EXPECT_EQ(host_.Dump(), before);
}

TEST_F(VariablesTest, OtherMethodsAreNotAllowed) {
  Start();
  EXPECT_EQ(Put(host_.port(), "/vars", "x").Header("Allow"), "GET, HEAD, POST, DELETE");
  EXPECT_EQ(Post(host_.port(), "/vars/rss_DeviceName", "x").Header("Allow"), "GET, HEAD, PUT");
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName/validate").Header("Allow"), "POST");
  const HttpResponse action = Get(host_.port(), "/actions/CommitRssVars");
  EXPECT_EQ(action.status, 405);
  EXPECT_EQ(action.Header("Allow"), "POST");
}

// A series ends with a settings exchange, a commit, or when it is thrown away.
TEST_F(VariablesTest, ASeriesBeginsWithTheSettingsOfTheDevice) {
  Start();
  EXPECT_EQ(Set("rss_DeviceName", "Set").status, 200);
  EXPECT_EQ(Read("rss_DeviceName").body, "Set");
  ExpectReply(Delete(host_.port(), "/vars"), 200, "0 done\n");
  EXPECT_EQ(Read("rss_DeviceName").body, "Home router");

  EXPECT_EQ(Set("rss_DeviceName", "Set").status, 200);
  const std::string refused = WithIn(FactoryDocument(), "Wireless2.4", "Channel", "99");
  EXPECT_EQ(Post(host_.port(), "/settings", refused).body,
            ResultDocument(3, "Device/Wireless2.4/Channel", 0));
  EXPECT_EQ(Read("rss_DeviceName").body, "Home router");
  EXPECT_EQ(Read("rss_Wl2_Channel").body, "0");

  EXPECT_EQ(Set("rss_Wl2_WirelessName", "Set").status, 200);
  EXPECT_EQ(Post(host_.port(), "/settings", With(FactoryDocument(), "DeviceName", "New")).status,
            200);
  EXPECT_EQ(Read("rss_Wl2_WirelessName").body, "HomeNet");
  EXPECT_EQ(Read("rss_DeviceName").body, "New");
}

}  // namespace
