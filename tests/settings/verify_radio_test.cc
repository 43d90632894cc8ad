// Verification of the radios and of the security service, field by field.
#include <functional>
#include <ostream>
#include <string>
#include <tuple>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

struct RadioFault {
  const char* name;
  std::function<void(RssWlan&)> change;
  int code;  // 0 when the change is still valid
  const char* field;
};

void PrintTo(const RadioFault& fault, std::ostream* out) { *out << fault.name; }

// Each fault in either radio.
class VerifyRadioTest : public SettingsTest,
                        public ::testing::WithParamInterface<std::tuple<RadioFault, int>> {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    FillSampleRecord();
    std::get<0>(GetParam()).change(radio());
  }

  [[nodiscard]] static RssWlan& radio() { return rssXmlData.wlan[std::get<1>(GetParam())]; }
  [[nodiscard]] static const RadioFault& fault() { return std::get<0>(GetParam()); }
  [[nodiscard]] static std::string Path() {
    return std::get<1>(GetParam()) == 0 ? "Device/Wireless2.4/" : "Device/Wireless5/";
  }
};

TEST_P(VerifyRadioTest, IsJudged) {
  const int result = Verify_RssXml();
  EXPECT_TRUE(Host().Writes().empty());
  if (fault().code == 0) {
    EXPECT_EQ(result, 1) << rssXmlData.setMsg;
    EXPECT_TRUE(Host().commands().empty());
  } else {
    EXPECT_EQ(result, 0);
    EXPECT_EQ(Host().commands(), ResultCommands(fault().code, Path() + fault().field, 0));
  }
}

TEST_P(VerifyRadioTest, IsNotJudgedForARadioThatDoesNotExist) {
  unsigned char& feature =
      std::get<1>(GetParam()) == 0 ? rssXmlData.wlan24Feature : rssXmlData.wlan5Feature;
  feature = 0;
  EXPECT_EQ(Verify_RssXml(), 1);
}

TEST_P(VerifyRadioTest, IsNotJudgedForARadioThatIsNotConfigurable) {
  radio().configurable = 0;
  EXPECT_EQ(Verify_RssXml(), 1);
}

const RadioFault kSwitchFaults[] = {
    {"WlEnbl 4", [](RssWlan& b) { b.wlEnbl = 4; }, 3, "WlEnbl"},
    {"WlEnbl -1", [](RssWlan& b) { b.wlEnbl = -1; }, 3, "WlEnbl"},
    {"WlEnbl 3", [](RssWlan& b) { b.wlEnbl = 3; }, 0, ""},
    {"WlEnbl 2", [](RssWlan& b) { b.wlEnbl = 2; }, 0, ""},
    {"WlSchedule 3", [](RssWlan& b) { b.wlSchedule = 3; }, 3, "WlSchedule"},
    {"WlSchedule -1", [](RssWlan& b) { b.wlSchedule = -1; }, 3, "WlSchedule"},
    {"WlSchedule 2", [](RssWlan& b) { b.wlSchedule = 2; }, 0, ""},
    {"BSSID empty", [](RssWlan& b) { Put(b.wirelessBssid, ""); }, 3, "WirelessBSSID"},
    {"BSSID blank", [](RssWlan& b) { Put(b.wirelessBssid, " \t "); }, 3, "WirelessBSSID"},
    {"name empty", [](RssWlan& b) { Put(b.wirelessName, ""); }, 10, "WirelessName"},
    {"name character", [](RssWlan& b) { Put(b.wirelessName, "a\nb"); }, 11, "WirelessName"},
    {"name number",
     [](RssWlan& b) {
       Put(b.wirelessNameValidate, "1,5,2");
       Put(b.wirelessName, "6");
     },
     20, "WirelessName"},
    {"mode unknown", [](RssWlan& b) { b.encryptionModeCode = -1; }, 3, "EncryptionMode"},
    {"type unknown", [](RssWlan& b) { b.encryptionTypeCode = -1; }, 3, "EncryptionType"},
    {"WPA key too short", [](RssWlan& b) { Put(b.encryptionKey, "1234567"); }, 3, "EncryptionKey"},
    {"WPA key empty", [](RssWlan& b) { Put(b.encryptionKey, ""); }, 3, "EncryptionKey"},
    {"WPA key of 64 lower-case digits",
     [](RssWlan& b) { Put(b.encryptionKey, std::string(64, 'a')); }, 3, "EncryptionKey"},
    {"WPA key by rule", [](RssWlan& b) { Put(b.encryptionKeyValidate, "0,8,0"); }, 10,
     "EncryptionKey"},
    {"WPA key character", [](RssWlan& b) { Put(b.encryptionKey, "12345678\xFF"); }, 11,
     "EncryptionKey"},
    {"WPA key below minimum",
     [](RssWlan& b) {
       Put(b.encryptionKeyValidate, "1,99999999,5");
       Put(b.encryptionKey, "00000004");
     },
     21, "EncryptionKey"},
};
INSTANTIATE_TEST_SUITE_P(Switches, VerifyRadioTest,
                         ::testing::Combine(::testing::ValuesIn(kSwitchFaults),
                                            ::testing::Values(0, 1)));

const RadioFault kChannelFaults[] = {
    {"channel empty", [](RssWlan& b) { Put(b.channel, ""); }, 3, "Channel"},
    {"channel blank", [](RssWlan& b) { Put(b.channel, "  "); }, 3, "Channel"},
    {"channel not in the list", [](RssWlan& b) { Put(b.channel, "149"); }, 3, "Channel"},
    {"channel negative",
     [](RssWlan& b) {
       Put(b.channelList, "-1,2");
       Put(b.channel, "-1");
     },
     3, "Channel"},
    {"channel is a part of another",
     [](RssWlan& b) {
       Put(b.channelList, "11,21,13");
       Put(b.channel, "1");
     },
     3, "Channel"},
    {"channel first",
     [](RssWlan& b) {
       Put(b.channelList, "7,8,9");
       Put(b.channel, "7");
     },
     0, ""},
    {"channel last",
     [](RssWlan& b) {
       Put(b.channelList, "7,8,9");
       Put(b.channel, "9");
     },
     0, ""},
    {"channel automatic", [](RssWlan& b) { Put(b.channel, "0"); }, 0, ""},
    {"channel automatic not in the list",
     [](RssWlan& b) {
       Put(b.channelList, "1,2");
       Put(b.channel, "0");
     },
     3, "Channel"},
    {"channel 1000 against 1 to 13",
     [](RssWlan& b) {
       Put(b.channelList, "1,2,3,4,5,6,7,8,9,10,11,12,13");
       Put(b.channel, "1000");
     },
     3, "Channel"},
    {"only three characters of a channel are looked for",
     [](RssWlan& b) {
       Put(b.channelList, "36,100");
       Put(b.channel, "1000");
     },
     0, ""},
    {"channel word in any case",
     [](RssWlan& b) {
       Put(b.channelList, "1,AUTO,abc");
       Put(b.channel, "ABC");
     },
     0, ""},
    {"channel list empty",
     [](RssWlan& b) {
       Put(b.channelList, "");
       Put(b.channel, "1");
     },
     3, "Channel"},
    {"channel list with blanks",
     [](RssWlan& b) {
       Put(b.channelList, "1, 2,3");
       Put(b.channel, "2");
     },
     3, "Channel"},
    {"channel at the end of a long list",
     [](RssWlan& b) {
       Put(b.channelList, std::string(123, '1') + ",9");
       Put(b.channel, "9");
     },
     0, ""},
    {"a full list loses its last comma",
     [](RssWlan& b) {
       Put(b.channelList, std::string(125, '1') + ",9");
       Put(b.channel, "9");
     },
     3, "Channel"},
};
INSTANTIATE_TEST_SUITE_P(Channel, VerifyRadioTest,
                         ::testing::Combine(::testing::ValuesIn(kChannelFaults),
                                            ::testing::Values(0, 1)));

const RadioFault kAccessFaults[] = {
    {"access control fault borrows the name of the radio's switch",
     [](RssWlan& b) { b.wlAcEnbl = 3; }, 3, "AccessControl/WlEnbl"},
    {"WlAcEnbl -1", [](RssWlan& b) { b.wlAcEnbl = -1; }, 3, "AccessControl/WlEnbl"},
    {"WlAcEnbl 2 ends the radio",
     [](RssWlan& b) {
       b.wlAcEnbl = 2;
       b.wlAcMode = 9;
       b.acRule[0].active = 9;
     },
     0, ""},
    {"WlAcEnbl 0 ends the radio",
     [](RssWlan& b) {
       b.wlAcEnbl = 0;
       b.wlAcMode = 9;
       b.acRule[0].active = 9;
     },
     0, ""},
    {"WlAcMode 2", [](RssWlan& b) { b.wlAcMode = 2; }, 3, "AccessControl/WlAcMode"},
    {"WlAcMode -1", [](RssWlan& b) { b.wlAcMode = -1; }, 3, "AccessControl/WlAcMode"},
    {"rule active 2", [](RssWlan& b) { b.acRule[0].active = 2; }, 3, "AccessControl/AcRule/Active"},
    {"rule active -1", [](RssWlan& b) { b.acRule[0].active = -1; }, 3,
     "AccessControl/AcRule/Active"},
    {"rule without MAC", [](RssWlan& b) { Put(b.acRule[0].mac, ""); }, 3,
     "AccessControl/AcRule/MAC"},
    {"rule with blank MAC", [](RssWlan& b) { Put(b.acRule[0].mac, " \t"); }, 3,
     "AccessControl/AcRule/MAC"},
    {"rule with any MAC", [](RssWlan& b) { Put(b.acRule[0].mac, "x"); }, 0, ""},
    {"rules beyond the number",
     [](RssWlan& b) {
       b.wlAcRuleNo = 0;
       b.acRule[0].active = 9;
     },
     0, ""},
    {"negative number of rules",
     [](RssWlan& b) {
       b.wlAcRuleNo = -1;
       b.acRule[0].active = 9;
     },
     0, ""},
};
INSTANTIATE_TEST_SUITE_P(AccessControl, VerifyRadioTest,
                         ::testing::Combine(::testing::ValuesIn(kAccessFaults),
                                            ::testing::Values(0, 1)));

class EncryptionPairTest : public SettingsTest,
                           public ::testing::WithParamInterface<std::tuple<int, int, int>> {
 protected:
  static bool Allowed(int mode, int type) {
    switch (mode) {
      case 0:
        return type == 0 || type == 5;
      case 1:
        return type == 0 || type == 1 || type == 2;
      case 2:
      case 3:
      case 4:
        return type == 0 || type == 3 || type == 4;
      default:
        return true;
    }
  }
};

TEST_P(EncryptionPairTest, ModeAndTypeMustAgree) {
  const auto [index, mode, type] = GetParam();
  FillSampleRecord();
  RssWlan& radio = rssXmlData.wlan[index];
  radio.encryptionModeCode = mode;
  radio.encryptionTypeCode = type;
  Put(radio.encryptionKey, mode == 1 ? "abcde" : "abcdefgh");
  EXPECT_EQ(Verify_RssXml(), Allowed(mode, type) ? 1 : 0);
  if (!Allowed(mode, type)) {
    EXPECT_EQ(Host().commands(), ResultCommands(3, std::string(radio.path) + "/EncryptionType", 0));
  }
  // The pair is not looked at in version 1.0.
  rssXmlData.specVer = 100;
  EXPECT_EQ(Verify_RssXml(), 1);
}

INSTANTIATE_TEST_SUITE_P(Pairs, EncryptionPairTest,
                         ::testing::Combine(::testing::Values(0, 1), ::testing::Range(0, 7),
                                            ::testing::Range(0, 6)));

class VerifyKeyTest : public SettingsTest {
 protected:
  static int Judge(int mode, const std::string& key) {
    FillSampleRecord();
    rssXmlData.wlan[1].encryptionModeCode = mode;
    rssXmlData.wlan[1].encryptionTypeCode = 0;
    Put(rssXmlData.wlan[1].encryptionKey, key);
    Put(rssXmlData.wlan[1].encryptionKeyValidate, "2");
    return Verify_RssXml();
  }
};

TEST_F(VerifyKeyTest, WepKeys) {
  for (const std::string& key : {std::string("abcde"), std::string(13, 'k'),
                                 std::string("0123456789"), std::string(26, 'F')}) {
    EXPECT_EQ(Judge(1, key), 1) << key;
  }
  for (const std::string& key :
       {std::string(), std::string("abcd"), std::string("abcdef"), std::string(10, 'a'),
        std::string(26, 'g'), std::string(12, 'k')}) {
    EXPECT_EQ(Judge(1, key), 0) << key;
    EXPECT_STREQ(rssXmlData.setMsg, "Device/Wireless5/EncryptionKey");
  }
}

TEST_F(VerifyKeyTest, WpaKeys) {
  for (const int mode : {2, 3, 4}) {
    for (const std::string& key :
         {std::string(8, 'k'), std::string(63, '~'), std::string(64, 'A'), std::string(64, '9')}) {
      EXPECT_EQ(Judge(mode, key), 1) << mode << key;
    }
    for (const std::string& key :
         {std::string(), std::string(7, 'k'), std::string(64, 'G'), std::string(65, 'A')}) {
      EXPECT_EQ(Judge(mode, key), 0) << mode << key;
    }
  }
}

TEST_F(VerifyKeyTest, OtherModesAskForNoForm) {
  for (const std::string& key : {std::string(), std::string("x"), std::string(100, 'y')}) {
    EXPECT_EQ(Judge(0, key), 1) << key;
    EXPECT_EQ(Judge(5, key), 1) << key;
  }
}

class VerifySafetyTest : public SettingsTest {};

TEST_F(VerifySafetyTest, EachSwitchIsTestedUnsigned) {
  struct Row {
    int RssSafetyVyr::*member;
    const char* name;
  };
  constexpr Row kRows[] = {{&RssSafetyVyr::safetyVyrEnbl, "SafetyVyrEnbl"},
                           {&RssSafetyVyr::urlDetectEnbl, "UrlDetectEnbl"},
                           {&RssSafetyVyr::safetyNotifyEnbl, "SafetyNotifyEnbl"},
                           {&RssSafetyVyr::toolRecommendEnbl, "ToolRecommendEnbl"}};
  for (const Row& row : kRows) {
    for (const int value : {2, -1}) {
      FillSampleRecord();
      Host().ClearCommands();
      rssXmlData.safetyVyr.*row.member = value;
      EXPECT_EQ(Verify_RssXml(), 0);
      EXPECT_EQ(Host().commands(),
                ResultCommands(3, std::string("Device/SafetyVyr/") + row.name, 0));
    }
    rssXmlData.safetyVyrFeature = 0;
    EXPECT_EQ(Verify_RssXml(), 1);
    rssXmlData.safetyVyrFeature = 1;
    rssXmlData.apCloningOnly = 1;
    EXPECT_EQ(Verify_RssXml(), 1);
  }
}

}  // namespace
}  // namespace kio::test
