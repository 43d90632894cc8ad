// What the tables of single variables do not show of the uplink.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

class UplinkVariableTest : public VariableTest {};

TEST_F(UplinkVariableTest, KeywordsAreStoredAsTheTableSpellsThem) {
  const std::vector<std::pair<const char*, int>> hardware = {
      {"Ethernet", 0}, {"ADSL", 1}, {"VDSL", 2}, {"WWan802.11", 3}, {"WWanAPN", 4}, {"DSL", 5}};
  for (const auto& [word, code] : hardware) {
    EXPECT_EQ(Write("rss_Upl_HardwareType", word).code, 0U);
    EXPECT_STREQ(rssXmlData.upLink.hardwareType, word);
    EXPECT_EQ(rssXmlData.upLink.hardwareTypeCode, code);
  }
  const std::vector<std::pair<const char*, int>> connections = {
      {"DHCP", 0}, {"Static", 1}, {"PPPoE", 2}, {"PPPoA", 3}};
  for (const auto& [word, code] : connections) {
    EXPECT_EQ(Write("rss_Upl_ConnType", word).code, 0U);
    EXPECT_STREQ(rssXmlData.upLink.connType, word);
    EXPECT_EQ(rssXmlData.upLink.connTypeCode, code);
  }
  EXPECT_EQ(Write("rss_Upl_HardwareType", "wwan802.11").code, 0U);
  EXPECT_STREQ(rssXmlData.upLink.hardwareType, "WWan802.11");
  EXPECT_EQ(Write("rss_Upl_ConnType", "STATIC").code, 0U);
  EXPECT_STREQ(rssXmlData.upLink.connType, "Static");
}

TEST_F(UplinkVariableTest, KeywordsAreLogged) {
  log_file::Start(7);
  Write("rss_Upl_HardwareType", "vdsl");
  Validate("rss_Upl_ConnType", "PPPoA");
  Write("rss_Upl_Ets_WirelessType", "5");
  EXPECT_THAT(log_file::Lines(), Contains("Rss HardwareType='VDSL' -> 2"));
  EXPECT_THAT(log_file::Lines(), Contains("Rss ConnType='PPPoA' -> 3"));
  EXPECT_THAT(log_file::Lines(), Contains("Rss WirelessType='5' -> 1"));
  log_file::Start(6);
  Write("rss_Upl_HardwareType", "VDSL");
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(UplinkVariableTest, ReadsOfKeywordsLogNoKeyword) {
  log_file::Start(7);
  Read("rss_Upl_HardwareType");
  ReadPath("rss_Upl_ConnType");
  Write("rss_Upl_HardwareType", "Fiber");
  EXPECT_THAT(log_file::Contents(), Not(HasSubstr("Rss ")));
}

// Quirk "valid-words-are-refused".
TEST_F(UplinkVariableTest, CheckingAKeywordAloneNeverPasses) {
  EXPECT_EQ(Validate("rss_Upl_HardwareType", "Ethernet").code, 2U);
  EXPECT_EQ(Validate("rss_Upl_HardwareType", "Fiber").code, 10U);
  EXPECT_EQ(Validate("rss_Upl_ConnType", "dhcp").code, 2U);
  EXPECT_EQ(Validate("rss_Upl_Ets_WirelessType", "2.4").code, 2U);
}

struct TextCase {
  const char* name;
  std::string value;
  std::function<char*(RssXmlData&)> member;
  std::size_t capacity;
};

TEST_F(UplinkVariableTest, TextsAreCutToTheirMembers) {
  Put(rssXmlData.loginUserNameValidate, "2");
  Put(rssXmlData.loginPasswordValidate, "2");
  const std::string text(200, 't');
  const std::string address = "10.0.0.99" + text;
  const std::string mask = "255.255.255.128" + text;
  const std::vector<TextCase> cases = {
      {"rss_Upl_LoginUserName", text, [](RssXmlData& r) { return r.upLink.loginUserName; }, 127},
      {"rss_Upl_LoginPassword", text, [](RssXmlData& r) { return r.upLink.loginPassword; }, 127},
      {"rss_Upl_IP", address, [](RssXmlData& r) { return r.upLink.ip; }, 15},
      {"rss_Upl_NetMask", mask, [](RssXmlData& r) { return r.upLink.netMask; }, 15},
      {"rss_Upl_Gateway", address, [](RssXmlData& r) { return r.upLink.gateway; }, 15},
      {"rss_Upl_DNS", address, [](RssXmlData& r) { return r.upLink.dns; }, 15},
      {"rss_Upl_Ets_ConnRefSiteBSSID", text,
       [](RssXmlData& r) { return r.upLink.extenderSite.connRefSiteBssid; }, 17},
      {"rss_Upl_Ets_WirelessName", text,
       [](RssXmlData& r) { return r.upLink.extenderSite.wirelessName; }, 127},
      {"rss_Upl_Ets_EncryptionKey", text,
       [](RssXmlData& r) { return r.upLink.extenderSite.encryptionKey; }, 127},
      {"rss_Upl_Dsl_CountryName", text, [](RssXmlData& r) { return r.upLink.dsl.countryName; },
       127},
      {"rss_Upl_Dsl_IspName", text, [](RssXmlData& r) { return r.upLink.dsl.ispName; }, 127},
      {"rss_Upl_Apn_CountryName", text, [](RssXmlData& r) { return r.upLink.apn.countryName; },
       127},
      {"rss_Upl_Apn_IspName", text, [](RssXmlData& r) { return r.upLink.apn.ispName; }, 127},
  };
  const RecordWatch record;
  for (const TextCase& item : cases) {
    record.Restore();
    EXPECT_EQ(Write(item.name, item.value).code, 0U) << item.name;
    record.ExpectOnly(
        [&item](RssXmlData& r) {
          const std::string kept = item.value.substr(0, item.capacity);
          std::copy(kept.c_str(), kept.c_str() + kept.size() + 1, item.member(r));
        },
        item.name);
    EXPECT_EQ(Read(item.name), (Answer{0, item.value.substr(0, item.capacity)}));
  }
}

TEST_F(UplinkVariableTest, RulesAreThoseOfTheRecord) {
  Put(rssXmlData.loginUserNameValidate, "1,5,2");
  Put(rssXmlData.loginPasswordValidate, "0,9,1,0,0,x-z");
  EXPECT_EQ(Write("rss_Upl_LoginUserName", "6").code, 20U);
  EXPECT_EQ(Write("rss_Upl_LoginUserName", "1").code, 21U);
  EXPECT_EQ(Write("rss_Upl_LoginUserName", "5").code, 0U);
  EXPECT_EQ(Write("rss_Upl_LoginPassword", "oxo").code, 11U);
  EXPECT_EQ(Write("rss_Upl_LoginPassword", "ooooo").code, 0U);
  EXPECT_EQ(Read("rss_Upl_LoginUserName_Validate"), (Answer{0, "1,5,2"}));
  EXPECT_EQ(Read("rss_Upl_LoginPassword_Validate"), (Answer{0, "0,9,1,0,0,x-z"}));
}

TEST_F(UplinkVariableTest, ConfigurableTellsTheFlag) {
  rssXmlData.upLink.configurable = 0;
  EXPECT_EQ(Read("rss_Upl_Configurable"), (Answer{0, "0"}));
  rssXmlData.upLink.configurable = 7;
  EXPECT_EQ(Read("rss_Upl_Configurable"), (Answer{0, "7"}));
  EXPECT_EQ(Write("rss_Upl_IP", "1.2.3.4").code, 0U) << "any flag but 0 allows writes";
}

// Quirk "value-for-a-path".
TEST_F(UplinkVariableTest, TwoPathsAreValues) {
  Put(rssXmlData.upLink.dns, "9.8.7.6");
  Put(rssXmlData.upLink.hardwareSupport, "ADSL,%s");
  EXPECT_EQ(ReadPath("rss_Upl_DNS"), (Answer{0, "9.8.7.6"}));
  EXPECT_EQ(ReadPath("rss_Upl_HardwareSupport"), (Answer{0, "ADSL,%s"}));
}

// Quirk "sxtendersite".
TEST_F(UplinkVariableTest, ConnStatusIsNotReadBelowExtenderSite) {
  Host().Set("/uplink/extendersite/connstatus", "the well-spelled one");
  EXPECT_EQ(Read("rss_Upl_Ets_ConnStatus"), (Answer{0, ""}));
  Host().Set("/uplink/sxtendersite/connstatus", "joined");
  EXPECT_EQ(Read("rss_Upl_Ets_ConnStatus"), (Answer{0, "joined"}));
  EXPECT_EQ(ReadPath("rss_Upl_Ets_ConnStatus"), (Answer{0, "/uplink/extendersite/ConnStatus"}));
}

// Quirk "uplink-asp".
TEST_F(UplinkVariableTest, ApnPathsSayAsp) {
  EXPECT_EQ(ReadPath("rss_Upl_Apn_CountryName"), (Answer{0, "/uplink/asp/CountryName"}));
  EXPECT_EQ(ReadPath("rss_Upl_Apn_IspName"), (Answer{0, "/uplink/asp/IspName"}));
}

constexpr const char* kUnknown[] = {"rss_Upl_",
                                    "rss_Upl_X",
                                    "rss_Upl_ip",
                                    "rss_Upl_MTU",
                                    "rss_Upl_Restart",
                                    "rss_Upl_IP_",
                                    "rss_Upl_IP_X",
                                    "rss_Upl_IPX",
                                    "rss_Upl_Configurable_X",
                                    "rss_Upl_HardwareSupport_",
                                    "rss_Upl_Ets",
                                    "rss_Upl_Ets_",
                                    "rss_Upl_Ets_X",
                                    "rss_Upl_Ets_Survey_",
                                    "rss_Upl_Ets_Survey_X",
                                    "rss_Upl_Ets_ConnStatus_X",
                                    "rss_Upl_Ets_survey",
                                    "rss_Upl_Ets_Validate",
                                    "rss_Upl_Ets_WirelessName_Validate",
                                    "rss_Upl_ets_Survey",
                                    "rss_Upl_Etsx_Survey",
                                    "rss_Upl_Dsl",
                                    "rss_Upl_Dsl_",
                                    "rss_Upl_Dsl_VPI",
                                    "rss_Upl_Dsl_IspName_",
                                    "rss_Upl_Dsl_IspName_X",
                                    "rss_Upl_Dslx_IspName",
                                    "rss_Upl_Apn",
                                    "rss_Upl_Apn_",
                                    "rss_Upl_Apn_APN",
                                    "rss_Upl_Apn_CountryName_X",
                                    "rss_Upl_Apnx_CountryName",
                                    "rss_Upl_Asp_CountryName",
                                    "rss_Upl_IP_Validate",
                                    "rss_Upl_HardwareType_Validate",
                                    "rss_Upl_LoginUserName_validate",
                                    "rss_Upl_LoginUserName_Validate_",
                                    "rss_Upl_LoginPassword_Validate_X",
                                    "rss_Upl__IP",
                                    "rss_Upl_1_2_3_4_5_6_7_8_9_10_11_12"};

TEST_F(UplinkVariableTest, OtherNamesAreUnknown) {
  const RecordWatch record;
  for (const char* name : kUnknown) {
    for (const int mode : {0, kPath, kWrite, kValidate, kWrite | kValidate}) {
      EXPECT_EQ(Call(name, mode, "1"), (Answer{2, "1"})) << name << " mode " << mode;
    }
    for (const int mode : {kRead, kRead | kPath, kRead | kWrite, kRead | kValidate}) {
      EXPECT_EQ(Call(name, mode, "1"), (Answer{2, ""})) << name << " mode " << mode;
    }
  }
  record.ExpectUnchanged("unknown names");
  EXPECT_TRUE(Host().calls().empty());
}

TEST_F(UplinkVariableTest, UplinkThatIsNotConfigurableAnswersEveryWriteWithOne) {
  rssXmlData.upLink.configurable = 0;
  const RecordWatch record;
  for (const char* name : kUnknown) {
    EXPECT_EQ(Call(name, kWrite, "1"), (Answer{1, "1"})) << name;
    EXPECT_EQ(Call(name, kWrite | kValidate, "1"), (Answer{1, "1"})) << name;
    EXPECT_EQ(Call(name, kRead | kWrite, "1"), (Answer{1, ""})) << name;
    EXPECT_EQ(Call(name, kValidate, "1"), (Answer{2, "1"})) << name;
    EXPECT_EQ(Read(name), (Answer{2, ""})) << name;
  }
  EXPECT_EQ(Write("rss_Upl_Validate", "1"), (Answer{1, "1"}));
  record.ExpectUnchanged("refused writes");
}

// A read of a name that ends there is taken for a rule of the device before the group is seen.
TEST_F(UplinkVariableTest, ValidateAloneIsNoUplinkNameWhenItIsRead) {
  rssXmlData.upLink.configurable = 0;
  EXPECT_EQ(Read("rss_Upl_Validate"), (Answer{2, ""}));
  EXPECT_EQ(Call("rss_Upl_Validate", kRead | kWrite, "1"), (Answer{2, ""}));
}

}  // namespace
}  // namespace kio::test
