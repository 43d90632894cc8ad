// The settings as an archive, and back again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::Not;

class BackupTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host_.Start());
    // The first exchange notes that the device is no longer as it came from the factory.
    ASSERT_EQ(
        Post(host_.port(), "/settings", With(FactoryDocument(), "DeviceName", "First")).status,
        200);
    ASSERT_EQ(Post(host_.port(), "/settings", Original()).body, ResultDocument(0, "", 15));
  }

  static std::string Original() {
    return WithIn(With(FactoryDocument(), "DeviceName", "A &amp; &lt;b&gt; \"c\""), "Wireless2.4",
                  "AccessControl", AccessRules(3));
  }

  std::string Backup(const std::string& query = "") const {
    return Get(host_.port(), "/backup" + query).body;
  }
  HttpResponse Restore(const std::string& archive, const std::string& query = "") const {
    return Post(host_.port(), "/restore" + query, archive);
  }
  // The archive with another part, and the hash that it had.
  std::string Changed(const std::string& pointer, const ordered_json& value) const {
    ordered_json archive = ordered_json::parse(Backup("?secrets=1"));
    archive[ordered_json::json_pointer(pointer)] = value;
    return archive.dump();
  }

  HostProcess host_;
};

TEST_F(BackupTest, TheArchiveTellsWhatItIsOf) {
  const HttpResponse answer = Get(host_.port(), "/backup");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.Header("Content-Type"), "application/json");
  const ordered_json archive = ordered_json::parse(answer.body);
  EXPECT_EQ(archive["format"], "kiohost backup");
  EXPECT_EQ(archive["formatVersion"], 1);
  EXPECT_EQ(archive["model"], "DR-2400");
  EXPECT_EQ(archive["firmware"], "DR2400_FW1.0.2_0101.bin");
  EXPECT_EQ(archive["documents"], "1.1");
  const ordered_json& device = archive["settings"]["Device"];
  EXPECT_EQ(device["DeviceName"], "A & <b> \"c\"");
  EXPECT_EQ(device["Wireless2.4"]["AccessControl"]["AcRule"].size(), 3U);
  EXPECT_EQ(device["Wireless2.4"]["AccessControl"]["AcRule"][2]["MAC"], "02:00:5E:BB:00:03");
}

TEST_F(BackupTest, SecretsStandInItOnRequestAlone) {
  for (const char* secret : {"change-me-soon", "correct-horse"}) {
    EXPECT_THAT(Backup(), Not(HasSubstr(secret)));
    EXPECT_THAT(Backup("?secrets=0"), Not(HasSubstr(secret)));
    EXPECT_THAT(Backup("?secrets=1"), HasSubstr(secret));
  }
  EXPECT_EQ(Get(host_.port(), "/backup?secrets=yes").status, 400);
}

TEST_F(BackupTest, ARestoreBringsEverythingBack) {
  const std::string before = host_.Dump();
  const std::string archive = Backup("?secrets=1");
  std::string other = With(With(FactoryDocument(), "DeviceName", "Other"), "DevicePwd", "other-pw");
  other = WithIn(other, "Wireless5", "AccessControl", AccessRules(7));
  ASSERT_EQ(Post(host_.port(), "/settings", other).status, 200);
  ASSERT_NE(host_.Dump(), before);
  const HttpResponse answer = Restore(archive);
  EXPECT_EQ(answer.body, ResultDocument(0, "", 25));
  EXPECT_NE(answer.Header("Kio-Apply-Id"), "");
  EXPECT_EQ(host_.Dump(), before);
  EXPECT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
}

TEST_F(BackupTest, WithoutSecretsTheyStayAsTheyAre) {
  const std::string archive = Backup();
  ASSERT_EQ(Post(host_.port(), "/settings",
                 With(With(FactoryDocument(), "DeviceName", "Other"), "DevicePwd", "other-pw"))
                .status,
            200);
  EXPECT_EQ(Restore(archive).body, ResultDocument(0, "", 15));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "A & <b> \"c\"");
  EXPECT_EQ(host_.Node("/sys/user:1/password"), "other-pw");
}

TEST_F(BackupTest, ADryRunTellsWhatWouldChange) {
  const std::string archive = Backup();
  ASSERT_EQ(Post(host_.port(), "/settings", With(Original(), "DeviceName", "Other")).status, 200);
  const std::string before = host_.Dump();
  const ordered_json forecast = ordered_json::parse(Restore(archive, "?dry-run=1").body);
  EXPECT_EQ(forecast["result"], 0);
  EXPECT_EQ(forecast["nodes"], ordered_json::parse(R"([{"path": "/sys/friendlyname",
                                  "old": "Other", "new": "A & <b> \"c\""}])"));
  EXPECT_EQ(host_.Dump(), before);
}

TEST_F(BackupTest, ItMayHaveToBeConfirmed) {
  const std::string archive = Backup();
  ASSERT_EQ(Post(host_.port(), "/settings", With(Original(), "DeviceName", "Other")).status, 200);
  const std::string before = host_.Dump();
  ASSERT_EQ(Restore(archive, "?confirm-within=60").status, 200);
  EXPECT_EQ(Restore(archive).status, 409);
  EXPECT_NE(host_.Dump(), before);
  EXPECT_EQ(Delete(host_.port(), "/settings/confirm").status, 200);
  EXPECT_EQ(host_.Dump(), before);
  EXPECT_EQ(Restore(archive, "?confirm-within=4").status, 400);
}

TEST_F(BackupTest, WhatDoesNotFitIsNamedAndChangesNothing) {
  const std::string before = host_.Dump();
  const auto expect = [this, &before](const std::string& archive, const std::string& fault) {
    const HttpResponse answer = Restore(archive);
    EXPECT_EQ(answer.status, 422) << answer.body;
    EXPECT_THAT(answer.body, HasSubstr(fault));
    EXPECT_EQ(host_.Dump(), before);
  };
  expect(Changed("/model", "DR-9"), "another model: \"DR-9\", and not \"DR-2400\"");
  expect(Changed("/formatVersion", 2), "another format version than 1");
  expect(Changed("/documents", "1.0"), "another version of settings documents: \"1.0\"");
  expect(Changed("/firmware", "old.bin"), "another firmware: \"old.bin\"");
  expect(Changed("/model", 7), "another model: \"?\"");
  expect(Changed("/settings/Device/DeviceName", "Other"), "the hash");
  expect(Changed("/hash", "0"), "the hash");
  expect(Changed("/settings/Device/Colour", "red"), "no setting Device/Colour");
  expect(Changed("/settings/Device/DeviceName", 7), "Device/DeviceName is no text");
  expect(Changed("/settings/Device/DeviceName", std::string(128, 'x')), "too long");
  expect(Changed("/settings/Device/DeviceName", std::string(1, '\0')), "NUL");
  expect(Changed("/settings/Device/Wireless5", "x"), "Device/Wireless5 is no object");
  expect(Changed("/settings/Device/Wireless5/AccessControl/AcRule", "x"), "AcRule is no list");
  expect(Changed("/settings", nullptr), "is no object");
  expect("{}", "no archive");
  expect("[]", "no archive");
  expect("not JSON", "no archive");
  expect(std::string(60000, '['), "no archive");
  EXPECT_EQ(Restore("").status, 400);
  EXPECT_EQ(Restore(Changed("/firmware", "old.bin"), "?other-firmware=1").status, 200);
}

// An archive that was made with other values on purpose.
std::string WithItsHash(const std::string& text) {
  ordered_json archive = ordered_json::parse(text);
  const std::string settings = archive["settings"].dump(2) + "\n";
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  EVP_Digest(settings.data(), settings.size(), digest, &size, EVP_md5(), nullptr);
  std::string hash;
  for (unsigned int i = 0; i < size; ++i) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", digest[i]);
    hash += pair;
  }
  archive["hash"] = hash;
  return archive.dump();
}

TEST_F(BackupTest, TheLibraryVerifiesEveryValue) {
  const std::string before = host_.Dump();
  EXPECT_EQ(Restore(WithItsHash(Changed("/settings/Device/Wireless5/Channel", "99"))).body,
            ResultDocument(3, "Device/Wireless5/Channel", 0));
  EXPECT_EQ(Restore(WithItsHash(Changed("/settings/Device/DeviceName", std::string(33, 'x')))).body,
            ResultDocument(10, "Device/DeviceName", 0));
  EXPECT_EQ(host_.Dump(), before);
  // What looks like an element is a text.
  const std::string name = "</DeviceName><X>";
  EXPECT_EQ(Restore(WithItsHash(Changed("/settings/Device/DeviceName", name))).body,
            ResultDocument(0, "", 5));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), name);
}

TEST_F(BackupTest, AnEmptyListOfRulesRemovesThem) {
  EXPECT_EQ(Restore(WithItsHash(Changed("/settings/Device/Wireless2.4/AccessControl/AcRule",
                                        ordered_json::array())))
                .body,
            ResultDocument(0, "", 10));
  EXPECT_THAT(host_.Dump(), Not(HasSubstr("/lan/wireless2.4:1/accesscontrol/acrule")));
}

TEST(BackupOfGapsTest, NumbersWithoutARuleAreLeftOut) {
  HostProcess host;
  host.UseProfile(ProfileWith({"/lan/wireless5:1/accesscontrol/acrule:4/mac = 02:00:5E:AA:00:04"}));
  ASSERT_TRUE(host.Start());
  const std::string archive = Get(host.port(), "/backup").body;
  EXPECT_EQ(
      ordered_json::parse(archive)["settings"]["Device"]["Wireless5"]["AccessControl"]["AcRule"],
      ordered_json::parse(R"([{"Active": "1", "MAC": "02:00:5E:AA:00:01"},
                                    {"Active": "0", "MAC": "02:00:5E:AA:00:04"}])"));
  EXPECT_THAT(Post(host.port(), "/restore", archive).body,
              HasSubstr("<RssSetResult>0</RssSetResult>"));
  EXPECT_EQ(host.Node("/lan/wireless5:1/accesscontrol/acrule:2/mac"), "02:00:5E:AA:00:04");
}

}  // namespace
