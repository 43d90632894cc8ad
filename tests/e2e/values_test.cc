// The values of all variables in one answer, and what has changed since an apply.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ValuesTest : public ::testing::Test {
 protected:
  void Start(const std::vector<std::string>& profile_lines = {}) {
    host_.UseProfile(ProfileWith(profile_lines));
    ASSERT_TRUE(host_.Start());
  }

  json Values(const std::string& query = "") const {
    const HttpResponse answer = Get(host_.port(), "/vars?values=1" + query);
    EXPECT_EQ(answer.status, 200) << answer.body;
    EXPECT_EQ(answer.Header("Content-Type"), "application/json");
    return json::parse(answer.body, nullptr, false);
  }

  static std::vector<std::string> Names(const json& values) {
    std::vector<std::string> names;
    for (const json& variable : values["variables"]) {
      names.push_back(variable["name"]);
    }
    return names;
  }

  // Applies and gives the id.
  std::string Apply(const std::string& document) const {
    return Post(host_.port(), "/settings", document).Header("Kio-Apply-Id");
  }

  HostProcess host_;
};

TEST_F(ValuesTest, EachValueIsTheOneThatASingleRequestReads) {
  Start({"/lan/wireless5:1/configurable/acrule:1 = x",
         "/lan/wireless5:1/accesscontrol/acrule:1/mac = 02:00:5E:00:00:09",
         "/wirelesssitesurvey/site:1/bssid = 02:00:5E:00:00:01",
         "/wirelesssitesurvey/site:2/bssid = 02:00:5E:00:00:02"});
  Put(host_.port(), "/vars/rss_DeviceName", "Set and not applied");
  const json values = Values("&secrets=1");
  EXPECT_EQ(values["settings"], "none");
  EXPECT_EQ(values["complete"], true);
  std::map<std::string, std::string> by_name;
  for (const json& variable : values["variables"]) {
    const std::string name = variable["name"];
    EXPECT_TRUE(by_name.emplace(name, variable["value"]).second) << name;
    EXPECT_EQ(Get(host_.port(), "/vars/" + name).body, variable["value"]) << name;
  }
  const json list = json::parse(Get(host_.port(), "/vars").body);
  for (const json& variable : list["variables"]) {
    EXPECT_TRUE(variable.contains("index") || by_name.contains(variable["name"]))
        << variable["name"];
  }
  EXPECT_EQ(by_name["rss_DeviceName"], "Set and not applied");
  EXPECT_TRUE(by_name.contains("rss_Wl5_Acl_R00_MAC"));
  EXPECT_FALSE(by_name.contains("rss_Wl5_Acl_R01_MAC"));
  EXPECT_EQ(by_name["rss_Ext_Ssv_S00_BSSID"], "02:00:5E:00:00:02");
  EXPECT_TRUE(by_name.contains("rss_Ext_Ssv_S01_BSSID"));
  EXPECT_FALSE(by_name.contains("rss_Ext_Ssv_S02_BSSID"));
}

TEST_F(ValuesTest, SecretsAreToldOnRequestAlone) {
  Start({"/sys/user:1/password = Hidden1", "/lan/wireless5:1/encryptionkey = Hidden22"});
  const std::string masked = Get(host_.port(), "/vars?values=1&secrets=0").body;
  EXPECT_EQ(masked.find("Hidden"), std::string::npos);
  int secrets = 0;
  const json values = json::parse(masked);
  for (const json& variable : values["variables"]) {
    const bool secret = variable.contains("secret");
    EXPECT_EQ(secret, variable["value"] == "********") << variable;
    secrets += secret ? 1 : 0;
  }
  EXPECT_EQ(secrets, 5);
  const json told = Values("&secrets=1");
  int hidden = 0;
  for (const json& variable : told["variables"]) {
    if (variable["name"] == "rss_DevicePwd" || variable["name"] == "rss_Wl5_EncryptionKey") {
      EXPECT_TRUE(variable["value"].get<std::string>().starts_with("Hidden"));
      EXPECT_EQ(variable["secret"], true);
      ++hidden;
    }
  }
  EXPECT_EQ(hidden, 2);
}

TEST_F(ValuesTest, WhatHasChangedSinceAnApplyIsListedAlone) {
  Start();
  const json first = Values();
  EXPECT_EQ(first["settings"], "none");
  const std::string one = Apply(With(FactoryDocument(), "DeviceName", "Attic"));
  const std::string two =
      Apply(WithIn(With(FactoryDocument(), "DeviceName", "Attic"), "Wireless5", "Channel", "40"));
  json since = Values("&changed-since=none");
  EXPECT_EQ(since["settings"], two);
  EXPECT_EQ(since["complete"], false);
  EXPECT_THAT(Names(since), ElementsAre("rss_DeviceName", "rss_FactoryDefault", "rss_Wl5_Channel"));
  EXPECT_EQ(since["variables"][0]["value"], "Attic");
  EXPECT_THAT(Names(Values("&changed-since=" + one)), ElementsAre("rss_Wl5_Channel"));
  since = Values("&changed-since=" + two);
  EXPECT_EQ(since["complete"], false);
  EXPECT_THAT(Names(since), IsEmpty());
  // Back to the beginning: what differs counts, and not what was written.
  const std::string back = Apply(FactoryDocument());
  EXPECT_THAT(Names(Values("&changed-since=none")), ElementsAre("rss_FactoryDefault"));
  EXPECT_THAT(Names(Values("&changed-since=" + one)), ElementsAre("rss_DeviceName"));
  // A batch and an action are applies, too.
  const HttpResponse batch =
      Post(host_.port(), "/vars", "rss_DevicePwd=Changed&rss_Act_ApplyAllRssVars=1");
  const std::string id = batch.Header("Kio-Apply-Id");
  EXPECT_NE(id, "") << batch.body;
  since = Values("&changed-since=" + back);
  EXPECT_THAT(Names(since), ElementsAre("rss_DevicePwd", "rss_Wl5_Acl_AcRuleNo"));
  EXPECT_EQ(since["variables"][0]["value"], "********");
  EXPECT_THAT(Names(Values("&changed-since=" + id)), IsEmpty());
}

TEST_F(ValuesTest, AnUnknownIdGivesEverythingAndSaysSo) {
  Start();
  const std::string before = Apply(With(FactoryDocument(), "DeviceName", "Attic"));
  const json all = Values();
  const std::string after = Apply(FactoryDocument());
  for (const std::string& id : {std::string("abc"), std::string(), std::string("none")}) {
    const json since = Values("&changed-since=" + id);
    EXPECT_EQ(since["complete"], true) << id;
    EXPECT_EQ(since["variables"].size(), all["variables"].size()) << id;
  }
  EXPECT_EQ(Values("&changed-since=" + before)["complete"], false);
  // The states of the last applies are kept, and no more.
  std::string last = after;
  for (int i = 0; i < 15; ++i) {
    last = Apply(With(FactoryDocument(), "DeviceName", "Room " + std::to_string(i)));
  }
  EXPECT_EQ(Values("&changed-since=" + before)["complete"], true);
  EXPECT_EQ(Values("&changed-since=" + after)["complete"], false);
  EXPECT_EQ(Values("&changed-since=" + last)["complete"], false);
  // Another start of the host knows none of them.
  EXPECT_EQ(host_.End(SIGTERM), 0);
  ASSERT_TRUE(host_.Start());
  const json restarted = Values("&changed-since=" + last);
  EXPECT_EQ(restarted["settings"], last);
  EXPECT_EQ(restarted["complete"], true);
  EXPECT_EQ(Values("&changed-since=" + last)["complete"], false);
}

TEST_F(ValuesTest, ParametersThatDoNotFitAreRefused) {
  Start();
  const std::map<std::string, std::string> cases = {
      {"?values=2", "values and secrets take 0 or 1\n"},
      {"?values", "values and secrets take 0 or 1\n"},
      {"?values=1&secrets=x", "values and secrets take 0 or 1\n"},
      {"?secrets=1", "secrets and changed-since go with values=1 only\n"},
      {"?values=0&changed-since=none", "secrets and changed-since go with values=1 only\n"},
  };
  for (const auto& [query, line] : cases) {
    const HttpResponse answer = Get(host_.port(), "/vars" + query);
    EXPECT_EQ(answer.status, 400) << query;
    EXPECT_EQ(answer.body, line) << query;
  }
  EXPECT_EQ(Get(host_.port(), "/vars?values=0").body, Get(host_.port(), "/vars").body);
}

}  // namespace
