// What the tables of single variables do not show of the device, its rules and its services.
#include <climits>
#include <string>
#include <utility>

#include "variables/variables.h"

namespace kio::test {
namespace {

class DeviceVariableTest : public VariableTest {};

TEST_F(DeviceVariableTest, EasyRoamingNeedsFourNumbersInTheirBounds) {
  for (const char* value : {"-70 0 1 1", "-1 0 1 1", "-70  5\t9 8", " -70 0 1 1", "-70 0 1 1 9",
                            "-70 0 1 1x", "-2147483648 2147483647 2147483647 2147483647"}) {
    EXPECT_EQ(Validate("rss_EasyRoaming", value), (Answer{0, value}));
    EXPECT_EQ(Write("rss_EasyRoaming", value), (Answer{0, value}));
    EXPECT_STREQ(rssXmlData.easyRoaming, value);
  }
}

TEST_F(DeviceVariableTest, EasyRoamingWithMissingNumbersIsRefused) {
  // A full value first: no number may be left over from it.
  ASSERT_EQ(Write("rss_EasyRoaming", "-70 4 5 6").code, 0U);
  const RecordWatch record;
  for (const char* value : {"-70 0 1", "-70 0", "-70", "-", "", " ", "-70 0 1 -", "-70 0 x 1"}) {
    EXPECT_EQ(Validate("rss_EasyRoaming", value), (Answer{2, value}));
    EXPECT_EQ(Write("rss_EasyRoaming", value), (Answer{2, value}));
  }
  record.ExpectUnchanged("missing numbers");
}

TEST_F(DeviceVariableTest, RulesAreThoseOfTheRecord) {
  for (const auto& [rule, name] : {std::pair{rssXmlData.friendlyNameValidate, "rss_DeviceName"},
                                   std::pair{rssXmlData.passwordValidate, "rss_DevicePwd"}}) {
    std::snprintf(rule, 128, "1,14,1");
    EXPECT_EQ(Validate(name, "15").code, 20U);
    EXPECT_EQ(Validate(name, "0").code, 21U);
    EXPECT_EQ(Write(name, "15").code, 20U);
    EXPECT_EQ(Write(name, "0").code, 21U);
    EXPECT_EQ(Write(name, "14").code, 0U);
    EXPECT_EQ(Read(name), (Answer{0, "14"}));
    std::snprintf(rule, 128, "0,8,2,0,1,a-c");
    EXPECT_EQ(Write(name, "abd").code, 11U);
    EXPECT_EQ(Write(name, "a").code, 10U);
    std::snprintf(rule, 128, "2");
    EXPECT_EQ(Write(name, "").code, 0U);
    EXPECT_EQ(Read(name), (Answer{0, ""}));
    rule[0] = '\0';
    EXPECT_EQ(Write(name, "").code, 10U);
    EXPECT_EQ(Write(name, "x").code, 0U);
  }
}

TEST_F(DeviceVariableTest, TextsAreCutToTheirMembers) {
  Put(rssXmlData.friendlyNameValidate, "2");
  Put(rssXmlData.passwordValidate, "2");
  const std::string text(200, 't');
  const std::string kept(127, 't');
  const RecordWatch record;
  EXPECT_EQ(Write("rss_DeviceName", text).code, 0U);
  record.ExpectOnly([&kept](RssXmlData& r) { Put(r.deviceName, kept); }, "DeviceName");
  EXPECT_EQ(Read("rss_DeviceName"), (Answer{0, kept}));
  record.Restore();
  EXPECT_EQ(Write("rss_DevicePwd", text).code, 0U);
  record.ExpectOnly([&kept](RssXmlData& r) { Put(r.devicePwd, kept); }, "DevicePwd");
  record.Restore();
  const std::string roaming = "-70 0 1 1 " + text;
  EXPECT_EQ(Write("rss_EasyRoaming", roaming).code, 0U);
  record.ExpectOnly([&roaming](RssXmlData& r) { Put(r.easyRoaming, roaming.substr(0, 127)); },
                    "EasyRoaming");
}

TEST_F(DeviceVariableTest, LockedSwitchTakesOnlyWhatItHolds) {
  for (const int locked : {2, 3, 77, INT_MAX}) {
    rssXmlData.routerEnbl = locked;
    const RecordWatch record;
    for (const char* value : {"0", "1", "", "x", "-1"}) {
      EXPECT_EQ(Write("rss_RouterEnbl", value), (Answer{2, value})) << locked;
      EXPECT_EQ(Validate("rss_RouterEnbl", value), (Answer{2, value})) << locked;
    }
    const std::string same = std::to_string(locked);
    EXPECT_EQ(Write("rss_RouterEnbl", same), (Answer{0, same}));
    EXPECT_EQ(Validate("rss_RouterEnbl", same), (Answer{0, same}));
    record.ExpectUnchanged("locked switch");
  }
}

// Quirk "switch-below-two".
TEST_F(DeviceVariableTest, OpenSwitchTakesAnyInteger) {
  for (const int open : {0, 1, -1, INT_MIN}) {
    for (const auto& [value, stored] : {std::pair{"2", 2}, std::pair{"7", 7}, std::pair{"-3", -3},
                                        std::pair{"x", 0}, std::pair{"", 0}, std::pair{" 1z", 1}}) {
      rssXmlData.routerEnbl = open;
      EXPECT_EQ(Validate("rss_RouterEnbl", value), (Answer{0, value}));
      EXPECT_EQ(rssXmlData.routerEnbl, open);
      EXPECT_EQ(Write("rss_RouterEnbl", value), (Answer{0, value}));
      EXPECT_EQ(rssXmlData.routerEnbl, stored) << open;
    }
  }
}

TEST_F(DeviceVariableTest, NumbersAreReadAsDecimalsWithTheirSign) {
  rssXmlData.routerEnbl = -12;
  EXPECT_EQ(Read("rss_RouterEnbl"), (Answer{0, "-12"}));
  rssXmlData.safetyVyr.urlDetectEnbl = INT_MIN;
  EXPECT_EQ(Read("rss_Vyr_UrlDetectEnbl"), (Answer{0, "-2147483648"}));
  rssXmlData.specMajor = INT_MAX;
  EXPECT_EQ(Read("rss_Ver_major"), (Answer{0, "2147483647"}));
}

TEST_F(DeviceVariableTest, FactoryDefaultThatIsNotToldIsOne) {
  EXPECT_EQ(Read("rss_FactoryDefault"), (Answer{0, "1"}));
  Host().Set("/sys/FactoryDefault", -5);
  EXPECT_EQ(Read("rss_FactoryDefault"), (Answer{0, "1"}));
  Host().Set("/sys/FactoryDefault", 0);
  EXPECT_EQ(Read("rss_FactoryDefault"), (Answer{0, "0"}));
  Host().Set("/sys/FactoryDefault", 12);
  EXPECT_EQ(Read("rss_FactoryDefault"), (Answer{0, "12"}));
}

TEST_F(DeviceVariableTest, DeviceTypeIsTheStoresNotTheRecords) {
  Put(rssXmlData.deviceType, "Router");
  Host().Set("/sys/devicetype", "Hotspot");
  EXPECT_EQ(Read("rss_DeviceType"), (Answer{0, "Hotspot"}));
}

TEST_F(DeviceVariableTest, FlagsTakeNumbersThatReadAsZeroOrOne) {
  for (const auto& [value, stored] :
       {std::pair{"01", 1}, std::pair{" 1", 1}, std::pair{"1x", 1}, std::pair{"on", 0},
        std::pair{"", 0}, std::pair{"-0", 0}, std::pair{"+1", 1}}) {
    rssXmlData.safetyVyr.safetyVyrEnbl = 7;
    EXPECT_EQ(Write("rss_Vyr_SafetyVyrEnbl", value), (Answer{0, value}));
    EXPECT_EQ(rssXmlData.safetyVyr.safetyVyrEnbl, stored) << value;
  }
  for (const char* value : {"2", "-1", "11", "2147483648", "4294967297"}) {
    EXPECT_EQ(Write("rss_Vyr_SafetyVyrEnbl", value), (Answer{2, value}));
  }
}

// Unknown names of these groups, in every mode.
TEST_F(DeviceVariableTest, OtherNamesAreUnknown) {
  const RecordWatch record;
  for (const char* name : {"rss_X",
                           "rss_devicename",
                           "rss_DeviceNam",
                           "rss_DeviceNames",
                           "rss_DeviceName ",
                           "rss_DeviceName_",
                           "rss_EasyRoaming_Validate",
                           "rss_RouterEnbl_Validate",
                           "rss_DeviceName_validate",
                           "rss_DeviceName_Validate_",
                           "rss_DeviceName_Validate_X",
                           "rss__Validate",
                           "rss_Validate",
                           "rss_DeviceType_Validate",
                           "rss_Ver",
                           "rss_Ver_",
                           "rss_Ver_Major",
                           "rss_Ver_major_",
                           "rss_Ver_major_minor",
                           "rss_Ver_combined",
                           "rss_Vyr",
                           "rss_Vyr_",
                           "rss_Vyr_SafetyVyrEnbl_",
                           "rss_Vyr_SafetyVyrEnbl_X",
                           "rss_Vyr_safetyvyrenbl",
                           "rss_Vyr_Configurable",
                           "rss_Foo_Bar",
                           "rss_ver_major",
                           "rss_X_DeviceName"}) {
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

}  // namespace
}  // namespace kio::test
