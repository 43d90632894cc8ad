// The access rules of the radios.
#include <climits>
#include <string>

#include "variables/variables.h"

namespace kio::test {
namespace {

class AccessRuleTest : public VariableTest, public ::testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] static std::string Name(const std::string& field) {
    return (GetParam() == 0 ? "rss_Wl2_Acl_" : "rss_Wl5_Acl_") + field;
  }
  [[nodiscard]] static std::string Rule(int index, const std::string& field) {
    return Name("R" + std::to_string(index / 10) + std::to_string(index % 10) + "_" + field);
  }

  RssWlan& radio_ = rssXmlData.wlan[GetParam()];
};

TEST_P(AccessRuleTest, EachRuleUpToTheNumberIsServed) {
  radio_.wlAcRuleNo = 40;
  for (int i = 0; i < 40; ++i) {
    const std::string mac = "mac " + std::to_string(i);
    EXPECT_EQ(Write(Rule(i, "MAC"), mac).code, 0U) << i;
    radio_.acRule[i].active = 100 + i;
  }
  for (int i = 0; i < 40; ++i) {
    EXPECT_EQ(Read(Rule(i, "MAC")), (Answer{0, "mac " + std::to_string(i)}));
    EXPECT_EQ(Read(Rule(i, "Active")), (Answer{0, std::to_string(100 + i)}));
    EXPECT_STREQ(radio_.acRule[i].mac, ("mac " + std::to_string(i)).c_str());
  }
  EXPECT_TRUE(Host().calls().empty());
}

// Quirk "rule-path-without-a-radio": without the radio before it, and counted from one.
TEST_P(AccessRuleTest, PathsCountFromOneAndNameNoRadio) {
  radio_.wlAcRuleNo = 40;
  EXPECT_EQ(ReadPath(Rule(0, "MAC")), (Answer{0, "/acrule:1/MAC"}));
  EXPECT_EQ(ReadPath(Rule(0, "Active")), (Answer{0, "/acrule:1/Active"}));
  EXPECT_EQ(ReadPath(Rule(9, "MAC")), (Answer{0, "/acrule:10/MAC"}));
  EXPECT_EQ(ReadPath(Rule(39, "Active")), (Answer{0, "/acrule:40/Active"}));
}

TEST_P(AccessRuleTest, RulesBeyondTheNumberAreUnknown) {
  for (const int count : {0, 1, 5, -1, INT_MIN}) {
    radio_.wlAcRuleNo = count;
    const RecordWatch record;
    const int first_unknown = count < 0 ? 0 : count;
    for (const char* field : {"MAC", "Active"}) {
      for (const int index : {first_unknown, first_unknown + 1, 39, 40, 99}) {
        EXPECT_EQ(Read(Rule(index, field)), (Answer{2, ""})) << index;
        EXPECT_EQ(ReadPath(Rule(index, field)), (Answer{2, ""})) << index;
        EXPECT_EQ(Write(Rule(index, field), "1"), (Answer{2, "1"})) << index;
        EXPECT_EQ(Validate(Rule(index, field), "1"), (Answer{2, "1"})) << index;
      }
      if (count > 0) {
        EXPECT_EQ(Read(Rule(count - 1, field)).code, 0U);
      }
    }
    record.ExpectUnchanged("rules beyond the number");
  }
}

TEST_P(AccessRuleTest, ALargerNumberReachesNoFurtherThanTheList) {
  for (const char* count : {"41", "99", "1000", "2147483647"}) {
    EXPECT_EQ(Write(Name("AcRuleNo"), count), (Answer{0, count}));
    const RecordWatch record;
    for (int index = 40; index < 100; ++index) {
      for (const char* field : {"MAC", "Active"}) {
        ASSERT_EQ(Write(Rule(index, field), "1"), (Answer{2, "1"})) << index;
        ASSERT_EQ(Validate(Rule(index, field), "1"), (Answer{2, "1"})) << index;
        ASSERT_EQ(Read(Rule(index, field)), (Answer{2, ""})) << index;
        ASSERT_EQ(ReadPath(Rule(index, field)), (Answer{2, ""})) << index;
      }
    }
    record.ExpectUnchanged("rules beyond the list");
    EXPECT_EQ(Write(Rule(39, "MAC"), "last").code, 0U);
    EXPECT_STREQ(radio_.acRule[39].mac, "last");
  }
}

TEST_P(AccessRuleTest, TheNumberMayBeAnyInteger) {
  for (const char* count : {"0", "-5", "99", "2147483647"}) {
    EXPECT_EQ(Validate(Name("AcRuleNo"), count), (Answer{0, count}));
    EXPECT_EQ(Write(Name("AcRuleNo"), count), (Answer{0, count}));
    EXPECT_EQ(Read(Name("AcRuleNo")), (Answer{0, count}));
  }
  EXPECT_EQ(Write(Name("AcRuleNo"), "many").code, 0U);
  EXPECT_EQ(radio_.wlAcRuleNo, 0);
}

// Quirk "active-goes-to-the-rule-of-its-value".
TEST_P(AccessRuleTest, ActiveLandsOnTheRuleOfItsValue) {
  radio_.wlAcRuleNo = 6;
  for (RssAcRule& rule : radio_.acRule) {
    rule.active = 7;
  }
  const int radio = GetParam();
  const RecordWatch record;
  EXPECT_EQ(Write(Rule(5, "Active"), "1"), (Answer{0, "1"}));
  record.ExpectOnly([radio](RssXmlData& r) { r.wlan[radio].acRule[1].active = 1; }, "1");
  EXPECT_EQ(Read(Rule(5, "Active")), (Answer{0, "7"})) << "rule 05 is as it was";
  record.Restore();
  EXPECT_EQ(Write(Rule(5, "Active"), "0"), (Answer{0, "0"}));
  record.ExpectOnly([radio](RssXmlData& r) { r.wlan[radio].acRule[0].active = 0; }, "0");
}

TEST_P(AccessRuleTest, MacsAreCutToTheirMember) {
  radio_.wlAcRuleNo = 40;
  const int radio = GetParam();
  const RecordWatch record;
  EXPECT_EQ(Write(Rule(39, "MAC"), std::string(100, 'm')).code, 0U);
  record.ExpectOnly(
      [radio](RssXmlData& r) { Put(r.wlan[radio].acRule[39].mac, std::string(17, 'm')); }, "MAC");
  EXPECT_EQ(Read(Rule(39, "MAC")), (Answer{0, std::string(17, 'm')}));
}

TEST_P(AccessRuleTest, OtherNamesAreUnknown) {
  radio_.wlAcRuleNo = 40;
  const RecordWatch record;
  for (const char* field :
       {"R",        "R_",       "R0",      "R00",      "R00_",      "R00_X",       "R0_MAC",
        "R_MAC",    "Rxy_MAC",  "R0x_MAC", "Rx0_MAC",  "R 1_MAC",   "R-1_MAC",     "R+1_MAC",
        "r00_MAC",  "S00_MAC",  "R00_mac", "R00_MAC_", "R00_MAC_X", "R00_Active_", "R00_active",
        "R001_MAC", "R00x_MAC", "R0:_MAC", "R/0_MAC",  "R00_Path",  "R00_Validate"}) {
    for (const int mode : {0, kPath, kWrite, kValidate, kWrite | kValidate}) {
      EXPECT_EQ(Call(Name(field), mode, "1"), (Answer{2, "1"})) << field << " mode " << mode;
    }
    for (const int mode : {kRead, kRead | kPath, kRead | kWrite, kRead | kValidate}) {
      EXPECT_EQ(Call(Name(field), mode, "1"), (Answer{2, ""})) << field << " mode " << mode;
    }
  }
  record.ExpectUnchanged("unknown names");
}

INSTANTIATE_TEST_SUITE_P(Radios, AccessRuleTest, ::testing::Values(0, 1));

}  // namespace
}  // namespace kio::test
