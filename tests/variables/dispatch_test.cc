// How a name finds its variable, and what becomes of the buffer.
#include <gmock/gmock.h>

#include <string>
#include <utility>

#include "testing/heap_chars.h"
#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

class DispatchTest : public VariableTest {};

constexpr int kDispatchModes[] = {0,
                                  kRead,
                                  kPath,
                                  kRead | kPath,
                                  kWrite,
                                  kValidate,
                                  kRead | kWrite,
                                  kRead | kValidate,
                                  kWrite | kValidate,
                                  kRead | kWrite | kValidate,
                                  0x7FFFFFFF,
                                  -1};

TEST_F(DispatchTest, NullNamesAndValuesAreRefused) {
  HeapChars<128> text("text");
  HeapChars name("rss_DeviceName");
  const RecordWatch record;
  for (const int mode : kDispatchModes) {
    EXPECT_EQ(setget_RssVar(nullptr, text, mode), 2U);
    EXPECT_EQ(setget_RssVar(name, nullptr, mode), 2U);
    EXPECT_EQ(setget_RssVar(nullptr, nullptr, mode), 2U);
  }
  EXPECT_STREQ(text, "text");
  record.ExpectUnchanged("null");
}

TEST_F(DispatchTest, NullsReachNoLogFormat) {
  log_file::Start(7);
  HeapChars<128> text("text");
  EXPECT_EQ(setget_RssVar(nullptr, text, kRead), 2U);
  EXPECT_EQ(setget_RssVar("rss_DeviceName", nullptr, kRead), 2U);
  EXPECT_EQ(setget_RssVar("/Foo/X", text, kRead), 2U);
}

// Names at the end of their memory: nothing behind the terminator is looked at.
TEST_F(DispatchTest, ShortNamesAreUnknown) {
  const RecordWatch record;
  for (const char* name : {"",
                           "r",
                           "rs",
                           "rss",
                           "rss_",
                           "abcd",
                           "____",
                           "/",
                           "//",
                           "/Dev",
                           "/Device/",
                           "rss__",
                           "rss___",
                           "abcd_",
                           "rss_A",
                           "rss_Act",
                           "rss_Act_",
                           "rss_Ver",
                           "rss_Ver_",
                           "rss_Upl",
                           "rss_Upl_",
                           "rss_Wl2",
                           "rss_Wl2_",
                           "rss_Wl5_Acl",
                           "rss_Wl2_Acl_",
                           "rss_Wl2_Acl_R",
                           "rss_Wl2_Acl_R0",
                           "rss_Wl2_Acl_R00",
                           "rss_Wl2_Acl_R00_",
                           "rss_Vyr_",
                           "rss_Ext",
                           "rss_Ext_",
                           "rss_Ext_Ssv",
                           "rss_Ext_Ssv_",
                           "rss_Ext_Ssv_S",
                           "rss_Ext_Ssv_S0",
                           "rss_Ext_Ssv_S00",
                           "rss_Ext_Fwu_",
                           "rss_Ac",
                           "rss_Ve_x",
                           "rss_U_x",
                           "rss__x"}) {
    for (const int mode : kDispatchModes) {
      EXPECT_EQ(Call(name, mode, "1").code, 2U) << name << " mode " << mode;
    }
  }
  record.ExpectUnchanged("short names");
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(DispatchTest, EveryPrefixOfAName) {
  for (const std::string name :
       {"rss_Wl2_Acl_R00_MAC", "rss_Ext_Ssv_S00_BSSID", "rss_Upl_LoginUserName_Validate",
        "rss_Ext_Fwu_CurrFwFileName", "rss_Act_SiteSurvey", "rss_DeviceName_Validate",
        "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:00/MAC"}) {
    for (std::size_t length = 0; length < name.size(); ++length) {
      const std::string part = name.substr(0, length);
      const bool is_variable = part == "rss_Upl_LoginUserName" || part == "rss_DeviceName";
      EXPECT_EQ(Read(part).code, is_variable ? 0U : 2U) << part;
    }
  }
}

TEST_F(DispatchTest, AReadEmptiesTheBufferOfAnUnknownName) {
  for (const int mode : kDispatchModes) {
    const Answer expected = {2, (mode & kRead) != 0 ? "" : "left"};
    EXPECT_EQ(Call("rss_Unknown", mode, "left"), expected) << mode;
    EXPECT_EQ(Call("rss_", mode, "left"), expected) << mode;
    EXPECT_EQ(Call("rss_Upl_DNS_X", mode & ~kWrite, "left"), expected) << mode;
  }
}

TEST_F(DispatchTest, ActionsGetTheirBufferAsItIs) {
  for (const int mode : kDispatchModes) {
    EXPECT_EQ(Call("rss_Act_Unknown", mode, "left"), (Answer{2, "left"})) << mode;
    EXPECT_EQ(Call("rss_Act_", mode, "left"), (Answer{2, "left"})) << mode;
  }
}

// Quirk "any-four-characters".
TEST_F(DispatchTest, TheFirstFourCharactersAreNotLookedAt) {
  for (const char* name : {"abc_DeviceName", "rss-DeviceName", "RSS_DeviceName", "    DeviceName",
                           "____DeviceName", "%s%nDeviceName"}) {
    EXPECT_EQ(Read(name), (Answer{0, "Kitchen"})) << name;
    EXPECT_EQ(ReadPath(name), (Answer{0, "/sys/friendlyname"})) << name;
    EXPECT_EQ(Write(name, "Kitchen"), (Answer{0, "Kitchen"})) << name;
  }
  EXPECT_EQ(Read("xyz_Upl_IP"), (Answer{0, "10.0.0.2"}));
  EXPECT_EQ(Read("rss_rss_DeviceName").code, 2U);
  EXPECT_EQ(Read("DeviceName").code, 2U);
}

// Quirk "three-characters-choose".
TEST_F(DispatchTest, ThreeCharactersChooseTheGroup) {
  Host().Set("/fwupgradeinfo/vendor", "Someone");
  EXPECT_EQ(Read("rss_Version_major"), (Answer{0, "1"}));
  EXPECT_EQ(Read("rss_Uplink_IP"), (Answer{0, "10.0.0.2"}));
  EXPECT_EQ(Read("rss_Wl24_WirelessName"), (Answer{0, "Home"}));
  EXPECT_EQ(ReadPath("rss_Wl5GHz_WlEnbl"), (Answer{0, "/lan/wireless5:1/WlEnbl"}));
  EXPECT_EQ(Read("rss_VyrX_SafetyVyrEnbl"), (Answer{0, "1"}));
  EXPECT_EQ(Read("rss_Extra_Fwu_Vendor"), (Answer{0, "Someone"}));
  rssXmlData.upLink.configurable = 0;
  EXPECT_EQ(Write("rss_Uplink_X", "1").code, 1U);
}

// An action without its usual prefix runs, but a read empties its buffer first.
TEST_F(DispatchTest, ActionsOfOtherPrefixesLoseTheBufferOfARead) {
  for (const char* name : {"abc_Act_SetRssVars", "rss_Action_SetRssVars"}) {
    const RecordWatch record;
    EXPECT_EQ(Call(name, kRead, "rss_DeviceName=Attic"), (Answer{0, ""})) << name;
    EXPECT_STREQ(rssXmlData.deviceName, "Kitchen");
    EXPECT_EQ(Call(name, kWrite, "rss_DeviceName=Attic"), (Answer{0, ""})) << name;
    EXPECT_STREQ(rssXmlData.deviceName, "Attic");
    record.Restore();
  }
}

TEST_F(DispatchTest, RulesOfTheDeviceNeedTheReadBit) {
  for (const int mode : kDispatchModes) {
    const bool reads = (mode & kRead) != 0;
    const bool tells_path = (mode & kPath) != 0;
    EXPECT_EQ(Call("rss_DeviceName_Validate", mode, "left"),
              reads ? (Answer{0, tells_path ? "/sys/friendlyname_validate" : "0,32,1"})
                    : (Answer{2, "left"}))
        << mode;
  }
}

TEST_F(DispatchTest, DocumentPathsAreServed) {
  const std::pair<const char*, const char*> reads[] = {
      {"/Device/DeviceName", "Kitchen"},
      {"/Device/DeviceName_Validate", "0,32,1"},
      {"/specVersion/major", "1"},
      {"/Device/UpLinkConnection/IP", "10.0.0.2"},
      {"/Device/UpLinkConnection/ExtenderSite/WirelessName", "Upstream"},
      {"/Device/UpLinkConnection/DSL/IspName", "Fjord DSL"},
      {"/Device/UpLinkConnection/APN/CountryName", "Sweden"},
      {"/Device/Wireless2.4/AccessControl/WlAcLists/AcRule#", "2"},
      {"/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:01/MAC", "02:00:00:00:00:02"},
      {"/Device/Wireless5/AccessControl/WlAcEnbl", "1"},
      {"/Device/SafetyVyr/SafetyVyrEnbl", "1"},
      {"/Device/DeviceName \r\n", "Kitchen"}};
  for (const auto& [path, value] : reads) {
    EXPECT_EQ(Read(path), (Answer{0, value})) << path;
  }
  EXPECT_EQ(ReadPath("/Device/UpLinkConnection/IP"), (Answer{0, "/uplink/IP"}));
  EXPECT_EQ(Write("/Device/UpLinkConnection/DNS", "9.9.9.9"), (Answer{0, "9.9.9.9"}));
  EXPECT_STREQ(rssXmlData.upLink.dns, "9.9.9.9");
  EXPECT_EQ(Validate("/Device/UpLinkConnection/IP", "x"), (Answer{2, "x"}));
  Host().Set("/wirelesssitesurvey/site#", 1);
  Host().Set("/wirelesssitesurvey/site:2/bssid", "bssid");
  EXPECT_EQ(Read("/WirelessSiteSurvey/Site:00/BSSID"), (Answer{0, "bssid"}));
  EXPECT_EQ(Read("/WirelessSiteSurvey/Site#"), (Answer{0, "1"}));
}

TEST_F(DispatchTest, OtherPathsAreUnknown) {
  for (const char* path : {"/", "/Foo/X", "/Device", "/Device/", "/Device/X", "/Device/X/Y",
                           "/Device/UpLinkConnection/", "/Device/UpLinkConnection/DSL/X/Y",
                           "/sys/friendlyname", "/uplink/IP", " /Device/DeviceName"}) {
    for (const int mode : {kRead, kRead | kPath, kWrite, kValidate, 0}) {
      EXPECT_EQ(Call(path, mode, "1").code, 2U) << path << " mode " << mode;
    }
  }
}

TEST_F(DispatchTest, CallsAreLogged) {
  log_file::Start(7);
  Call("rss_DeviceName", kWrite, "Attic");
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("1000:setget_RssVar]Name='rss_DeviceName',Val='Attic', Act=512"));
  log_file::Start(7);
  Call("rss_%s%n", kValidate, "%d%n");
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("1000:setget_RssVar]Name='rss_%s%n',Val='%d%n', Act=1024"));
  log_file::Start(6);
  Call("rss_DeviceName", kWrite, "Attic");
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(DispatchTest, PathsLogTheirName) {
  log_file::Start(7);
  Call("/Device/UpLinkConnection/IP", kRead | kPath, "before");
  EXPECT_THAT(
      log_file::Lines(),
      ElementsAre("1000:setget_RssVar]Name='/Device/UpLinkConnection/IP',Val='before', Act=257",
                  "rssVar='rss_Upl_IP'"));
}

TEST_F(DispatchTest, LongNamesAreUnknown) {
  for (const std::size_t length : {127U, 128U, 300U, 100000U}) {
    const std::string rest(length, 'x');
    const std::string prefixes[] = {"rss_",     "rss_Upl_", "rss_Act_",     "rss_Ext_Fwu_",
                                    "/Device/", "rss_Wl2_", "rss_Wl2_Acl_", "/Device/Wireless5/"};
    for (const std::string& prefix : prefixes) {
      EXPECT_EQ(Read(prefix + rest).code, 2U);
      EXPECT_EQ(Write(prefix + rest, "1").code, 2U);
    }
    EXPECT_EQ(Read("rss_" + std::string(length, '_')).code, 2U);
  }
}

}  // namespace
}  // namespace kio::test
