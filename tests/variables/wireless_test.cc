// What the tables of single variables do not show of the radios.
#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::Contains;

// Over both radios: the prefix of the names and the place in the record.
class WirelessVariableTest : public VariableTest, public ::testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] static std::string Name(const std::string& field) {
    return (GetParam() == 0 ? "rss_Wl2_" : "rss_Wl5_") + field;
  }

  RssWlan& radio_ = rssXmlData.wlan[GetParam()];
};

TEST_P(WirelessVariableTest, KeywordsAreStoredAsTheTableSpellsThem) {
  const std::vector<std::pair<const char*, int>> modes = {
      {"None", 0}, {"WEP", 1}, {"WPA", 2}, {"WPAWPA2", 3}, {"WPA2", 4}};
  for (const auto& [word, code] : modes) {
    EXPECT_EQ(Write(Name("EncryptionMode"), word).code, 0U);
    EXPECT_STREQ(radio_.encryptionMode, word);
    EXPECT_EQ(radio_.encryptionModeCode, code);
  }
  const std::vector<std::pair<const char*, int>> types = {{"AUTO", 0}, {"OPEN", 1}, {"SHARED", 2},
                                                          {"TKIP", 3}, {"AES", 4},  {"", 5}};
  for (const auto& [word, code] : types) {
    EXPECT_EQ(Write(Name("EncryptionType"), word).code, 0U);
    EXPECT_STREQ(radio_.encryptionType, word);
    EXPECT_EQ(radio_.encryptionTypeCode, code);
  }
  EXPECT_EQ(Write(Name("EncryptionMode"), "wpawpa2").code, 0U);
  EXPECT_STREQ(radio_.encryptionMode, "WPAWPA2");
  EXPECT_EQ(Write(Name("EncryptionType"), "aes").code, 0U);
  EXPECT_STREQ(radio_.encryptionType, "AES");
}

TEST_P(WirelessVariableTest, KeywordsAreLogged) {
  log_file::Start(7);
  Write(Name("EncryptionMode"), "none");
  Validate(Name("EncryptionType"), "shared");
  EXPECT_THAT(log_file::Lines(), Contains("Rss EncrypMode='None' -> 0"));
  EXPECT_THAT(log_file::Lines(), Contains("Rss EncrypType='SHARED' -> 2"));
}

// Quirk "valid-words-are-refused".
TEST_P(WirelessVariableTest, CheckingAKeywordAloneNeverPasses) {
  EXPECT_EQ(Validate(Name("EncryptionMode"), "WPA2").code, 2U);
  EXPECT_EQ(Validate(Name("EncryptionMode"), "WPA3").code, 10U);
  EXPECT_EQ(Validate(Name("EncryptionType"), "").code, 2U);
  EXPECT_EQ(Validate(Name("EncryptionType"), "x").code, 10U);
}

TEST_P(WirelessVariableTest, LockedSwitchesTakeOnlyWhatTheyHold) {
  const std::pair<const char*, int*> switches[] = {{"WlEnbl", &radio_.wlEnbl},
                                                   {"WlSchedule", &radio_.wlSchedule},
                                                   {"Acl_WlAcEnbl", &radio_.wlAcEnbl}};
  for (const auto& [field, member] : switches) {
    for (const int locked : {2, 3, 9}) {
      *member = locked;
      const RecordWatch record;
      for (const char* value : {"0", "1", "", "4"}) {
        EXPECT_EQ(Write(Name(field), value), (Answer{2, value})) << field;
        EXPECT_EQ(Validate(Name(field), value), (Answer{2, value})) << field;
      }
      EXPECT_EQ(Write(Name(field), std::to_string(locked)).code, 0U) << field;
      record.ExpectUnchanged(field);
    }
    for (const auto& [value, stored] :
         {std::pair{"5", 5}, std::pair{"-1", -1}, std::pair{"x", 0}}) {
      *member = 1;
      EXPECT_EQ(Write(Name(field), value), (Answer{0, value})) << field;
      EXPECT_EQ(*member, stored) << field;
    }
  }
}

TEST_P(WirelessVariableTest, RulesAreThoseOfTheRadio) {
  RssWlan& other = rssXmlData.wlan[1 - GetParam()];
  Put(other.wirelessNameValidate, "2");
  Put(other.encryptionKeyValidate, "2");
  Put(radio_.wirelessNameValidate, "0,5,2,0,1,a-e");
  Put(radio_.encryptionKeyValidate, "1,9,3");
  EXPECT_EQ(Write(Name("WirelessName"), "a").code, 10U);
  EXPECT_EQ(Write(Name("WirelessName"), "abf").code, 11U);
  EXPECT_EQ(Write(Name("WirelessName"), "abc").code, 0U);
  EXPECT_EQ(Write(Name("EncryptionKey"), "10").code, 20U);
  EXPECT_EQ(Write(Name("EncryptionKey"), "2").code, 21U);
  EXPECT_EQ(Write(Name("EncryptionKey"), "9").code, 0U);
  EXPECT_EQ(Read(Name("WirelessName_Validate")), (Answer{0, "0,5,2,0,1,a-e"}));
  EXPECT_EQ(Read(Name("EncryptionKey_Validate")), (Answer{0, "1,9,3"}));
}

TEST_P(WirelessVariableTest, TextsAreCutToTheirMembers) {
  Put(radio_.wirelessNameValidate, "2");
  Put(radio_.encryptionKeyValidate, "2");
  Put(radio_.channelList, "1,100");
  const std::string text(200, 't');
  const int radio = GetParam();
  const RecordWatch record;
  EXPECT_EQ(Write(Name("WirelessName"), text).code, 0U);
  record.ExpectOnly([&](RssXmlData& r) { Put(r.wlan[radio].wirelessName, text); }, "name");
  record.Restore();
  EXPECT_EQ(Write(Name("EncryptionKey"), text).code, 0U);
  record.ExpectOnly([&](RssXmlData& r) { Put(r.wlan[radio].encryptionKey, text); }, "key");
  record.Restore();
  EXPECT_EQ(Write(Name("Channel"), "100" + text).code, 0U);
  record.ExpectOnly([&](RssXmlData& r) { Put(r.wlan[radio].channel, "100" + text); }, "channel");
  EXPECT_EQ(Read(Name("Channel")), (Answer{0, "100" + text.substr(0, 28)}));
}

// Quirk "channel-of-three-characters".
TEST_P(WirelessVariableTest, OnlyThreeCharactersOfAChannelAreLookedFor) {
  Put(radio_.channelList, "1,2,100");
  for (const char* value : {"100", "1000", "100x", "1,2", "1,2,3"}) {
    EXPECT_EQ(Validate(Name("Channel"), value), (Answer{0, value}));
    EXPECT_EQ(Write(Name("Channel"), value), (Answer{0, value}));
    EXPECT_STREQ(radio_.channel, value);
  }
  for (const char* value : {"10", "00", "0", "2,1", ",", "", "-2", "1 "}) {
    EXPECT_EQ(Validate(Name("Channel"), value), (Answer{2, value}));
    EXPECT_EQ(Write(Name("Channel"), value), (Answer{2, value}));
  }
  EXPECT_STREQ(radio_.channel, "1,2,3");
}

TEST_P(WirelessVariableTest, ChannelsCompareWithoutCase) {
  Put(radio_.channelList, "1,Ab,c");
  EXPECT_EQ(Write(Name("Channel"), "aB").code, 0U);
  EXPECT_STREQ(radio_.channel, "aB");
  EXPECT_EQ(Write(Name("Channel"), "C").code, 0U);
  EXPECT_EQ(Write(Name("Channel"), "b").code, 2U);
}

TEST_P(WirelessVariableTest, CheckingAChannelTrimsTheListInPlace) {
  Put(radio_.channelList, " \t1,6,11\t ");
  const int radio = GetParam();
  const RecordWatch record;
  EXPECT_EQ(Validate(Name("Channel"), "11").code, 0U);
  record.ExpectOnly([radio](RssXmlData& r) { Put(r.wlan[radio].channelList, "1,6,11"); }, "list");
  EXPECT_EQ(Validate(Name("Channel"), "1").code, 0U);
  EXPECT_EQ(Read(Name("ChannelList")), (Answer{0, "1,6,11"}));
}

TEST_P(WirelessVariableTest, AnEmptyListAllowsNoChannel) {
  Put(radio_.channelList, "");
  for (const char* value : {"1", "0", ""}) {
    EXPECT_EQ(Write(Name("Channel"), value), (Answer{2, value}));
  }
}

// A list of 126 characters fits between its commas, one of 127 loses the closing comma.
TEST_P(WirelessVariableTest, AFullListLosesItsLastChannel) {
  std::string list = "7";
  while (list.size() < 123) {
    list += ",7";
  }
  Put(radio_.channelList, list + ",11");
  ASSERT_EQ(std::string(radio_.channelList).size(), 126U);
  EXPECT_EQ(Write(Name("Channel"), "11").code, 0U);
  Put(radio_.channelList, list + ",111");
  EXPECT_EQ(Write(Name("Channel"), "111").code, 2U);
  EXPECT_EQ(Write(Name("Channel"), "7").code, 0U);
}

TEST_P(WirelessVariableTest, OtherNamesAreUnknown) {
  for (const std::string field : {"",
                                  "X",
                                  "wlEnbl",
                                  "WlEnbl_",
                                  "WlEnbl_X",
                                  "WirelessBSSID_X",
                                  "Configurable",
                                  "Acl",
                                  "Acl_",
                                  "Acl_X",
                                  "Acl_AcRule",
                                  "Acl_AcRuleNo_",
                                  "Acl_AcRuleNo_X",
                                  "Acl_WlAcEnbl_X",
                                  "Acl_WlAcMode_",
                                  "acl_WlAcMode",
                                  "Aclx_WlAcMode",
                                  "Acl_Validate",
                                  "Channel_Validate",
                                  "WirelessName_validate",
                                  "WirelessName_Validate_",
                                  "EncryptionKey_Validate_X",
                                  "EncryptionMode_Validate",
                                  "AccessControl_WlAcEnbl",
                                  "_WlEnbl",
                                  "1_2_3_4_5_6_7_8_9_10"}) {
    radio_.configurable = 1;
    const RecordWatch record;
    for (const int mode : {0, kPath, kWrite, kValidate, kWrite | kValidate}) {
      EXPECT_EQ(Call(Name(field), mode, "1"), (Answer{2, "1"})) << field << " mode " << mode;
    }
    for (const int mode : {kRead, kRead | kPath, kRead | kWrite, kRead | kValidate}) {
      EXPECT_EQ(Call(Name(field), mode, "1"), (Answer{2, ""})) << field << " mode " << mode;
    }
    record.ExpectUnchanged(field);
    radio_.configurable = 0;
    EXPECT_EQ(Write(Name(field), "1"), (Answer{1, "1"})) << field;
    EXPECT_EQ(Call(Name(field), kRead | kWrite, "1"), (Answer{1, ""})) << field;
    EXPECT_EQ(Validate(Name(field), "1"), (Answer{2, "1"})) << field;
  }
  EXPECT_TRUE(Host().calls().empty());
}

INSTANTIATE_TEST_SUITE_P(Radios, WirelessVariableTest, ::testing::Values(0, 1));

TEST_F(VariableTest, ThereAreTwoRadios) {
  for (const char* name : {"rss_Wl1_WlEnbl", "rss_Wl_WlEnbl", "rss_wl2_WlEnbl", "rss_Wla_WlEnbl",
                           "rss_WL2_WlEnbl", "rss_Wl2", "rss_Wl5"}) {
    EXPECT_EQ(Read(name), (Answer{2, ""})) << name;
    EXPECT_EQ(Write(name, "1"), (Answer{2, "1"})) << name;
  }
}

}  // namespace
}  // namespace kio::test
