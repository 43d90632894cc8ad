// Conversion between variable names and document paths: the rules and their edges.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "variables/conversion.h"

namespace kio::test {
namespace {

constexpr std::size_t kLongest = 127;

TEST(NamesTest, SectionPrefixesAlone) {
  EXPECT_EQ(ToName("/Device/"), "rss_");
  EXPECT_EQ(ToName("/specVersion/"), "rss_Ver_");
  EXPECT_EQ(ToName("/Device/UpLinkConnection/"), "rss_Upl_");
  EXPECT_EQ(ToName("/Device/Wireless2.4/"), "rss_Wl2_");
  EXPECT_EQ(ToName("/Device/Wireless5/"), "rss_Wl5_");
  EXPECT_EQ(ToName("/Device/SafetyVyr/"), "rss_Vyr_");
  EXPECT_EQ(ToName("/FwUpgradeInfo/"), "rss_Ext_Fwu_");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/"), "rss_Ext_Ssv_");
  EXPECT_EQ(ToName("/APCloningInfo/"), "rss_Ext_Apc_");
  EXPECT_EQ(ToName("/SafetyVyrInfo/"), "rss_Ext_Vyr_");
  EXPECT_EQ(ToName("/DslIspList/"), "rss_Ext_Dsl_");
  EXPECT_EQ(ToName("/ApnIspList/"), "rss_Ext_Apn_");
  EXPECT_EQ(ToPath("rss_Ver_"), "/specVersion/");
  EXPECT_EQ(ToPath("rss_Upl_"), "/Device/UpLinkConnection/");
  EXPECT_EQ(ToPath("rss_Wl2_"), "/Device/Wireless2.4/");
  EXPECT_EQ(ToPath("rss_Wl5_"), "/Device/Wireless5/");
  EXPECT_EQ(ToPath("rss_Vyr_"), "/Device/SafetyVyr/");
  EXPECT_EQ(ToPath("rss_Ext_Fwu_"), "/FwUpgradeInfo/");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_"), "/WirelessSiteSurvey/");
  EXPECT_EQ(ToPath("rss_Ext_Apc_"), "/APCloningInfo/");
  EXPECT_EQ(ToPath("rss_Ext_Vyr_"), "/SafetyVyrInfo/");
  EXPECT_EQ(ToPath("rss_Ext_Dsl_"), "/DslIspList/");
  EXPECT_EQ(ToPath("rss_Ext_Apn_"), "/ApnIspList/");
}

TEST(NamesTest, SubPrefixesAlone) {
  EXPECT_EQ(ToPath("rss_Upl_Dsl_"), "/Device/UpLinkConnection/DSL/");
  EXPECT_EQ(ToPath("rss_Wl2_Acl_"), "/Device/Wireless2.4/AccessControl/");
  EXPECT_EQ(ToPath("rss_Wl5_Acl_R07_"), "/Device/Wireless5/AccessControl/WlAcLists/AcRule:07/");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_S11_"), "/WirelessSiteSurvey/Site:11/");
  EXPECT_EQ(ToName("/Device/UpLinkConnection/DSL/"), "rss_Upl_Dsl_");
  EXPECT_EQ(ToName("/Device/Wireless2.4/AccessControl/"), "rss_Wl2_Acl_");
  EXPECT_EQ(ToName("/Device/Wireless5/AccessControl/WlAcLists/AcRule:07/"), "rss_Wl5_Acl_R07_");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/Site:11/"), "rss_Ext_Ssv_S11_");
}

TEST(NamesTest, AtMostOneSubPrefixIsApplied) {
  EXPECT_EQ(ToPath("rss_Upl_Dsl_Apn_X"), "/Device/UpLinkConnection/DSL/Apn_X");
  EXPECT_EQ(ToPath("rss_Wl2_Acl_Acl_X"), "/Device/Wireless2.4/AccessControl/Acl_X");
  EXPECT_EQ(ToPath("rss_Wl2_Acl_AcRuleNoX"),
            "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule#X");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_SiteNo_S01_X"), "/WirelessSiteSurvey/Site#_S01_X");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/Site#X"), "rss_Ext_Ssv_SiteNoX");
  EXPECT_EQ(ToName("/Device/Wireless5/AccessControl/WlAcLists/AcRule#X"), "rss_Wl5_Acl_AcRuleNoX");
}

TEST(NamesTest, NameThatCarriesNoPrefixBelongsToTheDevice) {
  EXPECT_EQ(ToPath("rss_X"), "/Device/X");
  EXPECT_EQ(ToPath("rss_Upl"), "/Device/Upl");
  EXPECT_EQ(ToPath("rss_upl_IP"), "/Device/upl_IP");
  EXPECT_EQ(ToPath("rss_Ext_X"), "/Device/Ext_X");
  EXPECT_EQ(ToPath("rss_Ext_"), "/Device/Ext_");
  EXPECT_EQ(ToPath("rss_Wl24_X"), "/Device/Wl24_X");
  EXPECT_EQ(ToPath("rss_rss_Upl_IP"), "/Device/rss_Upl_IP");
  EXPECT_EQ(ToPath("rss_Act_Commit"), "/Device/Act_Commit");
  EXPECT_EQ(ToPath("rss_a/b/c"), "/Device/a/b/c") << "a name may hold slashes";
  EXPECT_EQ(ToPath("rss_Upl_a/b"), "/Device/UpLinkConnection/a/b");
  EXPECT_EQ(ToPath("rss_%s%n"), "/Device/%s%n");
}

TEST(NamesTest, PathsOfNoSectionHaveNoName) {
  for (const char* path :
       {"/Foo/X", "/", "//", "Device/DeviceName", "/device/DeviceName", "/Device", "/specVersion",
        "/specversion/major", "/Device2/X", "rss_DeviceName", "x", "/FwUpgradeInfo", "/DslIspLis/",
        "/WirelessSiteSurvey"}) {
    EXPECT_EQ(ToName(path), std::nullopt) << path;
  }
}

TEST(NamesTest, PathsWithDeeperLevelsHaveNoName) {
  for (const char* path :
       {"/Device/UpLinkConnection/DSL/X/Y", "/Device/X/Y", "/Device/X/", "/Device//",
        "/Device/UpLinkConnection//IP", "/Device/UpLinkConnection/dsl/X",
        "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:03/MAC/X",
        "/Device/Wireless2.4/AccessControl/WlAcLists/X", "/Device/Wireless2.4/X/Y",
        "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:3/MAC",
        "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:003/MAC",
        "/WirelessSiteSurvey/Site:1/X", "/WirelessSiteSurvey/Site:01/X/Y",
        "/WirelessSiteSurvey/Site#/X", "/specVersion/major/", "/FwUpgradeInfo/A/B",
        "/Device/Wireless24/X"}) {
    EXPECT_EQ(ToName(path), std::nullopt) << path;
  }
}

TEST(NamesTest, PathsWithoutTheirLastSlashAreElements) {
  EXPECT_EQ(ToName("/Device/UpLinkConnection"), "rss_UpLinkConnection");
  EXPECT_EQ(ToName("/Device/UpLinkConnection/DSL"), "rss_Upl_DSL");
  EXPECT_EQ(ToName("/Device/Wireless2.4/AccessControl"), "rss_Wl2_AccessControl");
  EXPECT_EQ(ToName("/Device/Wireless2.4/AccessControl/WlAcLists"), "rss_Wl2_Acl_WlAcLists");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/Site:01"), "rss_Ext_Ssv_Site:01");
}

// Quirk "index-is-any-two".
TEST(NamesTest, IndexCharactersAreCopiedAsTheyAre) {
  EXPECT_EQ(ToPath("rss_Wl2_Acl_Rxy_MAC"),
            "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:xy/MAC");
  EXPECT_EQ(ToPath("rss_Wl5_Acl_R__X"), "/Device/Wireless5/AccessControl/R__X");
  EXPECT_EQ(ToPath("rss_Wl5_Acl_R___X"), "/Device/Wireless5/AccessControl/WlAcLists/AcRule:__/X");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_S%s_X"), "/WirelessSiteSurvey/Site:%s/X");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/Site:%n/X"), "rss_Ext_Ssv_S%n_X");
  EXPECT_EQ(ToName("/Device/Wireless5/AccessControl/WlAcLists/AcRule:?*/X"), "rss_Wl5_Acl_R?*_X");
}

// The wildcards of a rule face the end of the text.
TEST(NamesTest, ShortNamesMatchNoIndex) {
  EXPECT_EQ(ToPath("rss_Wl2_Acl_R"), "/Device/Wireless2.4/AccessControl/R");
  EXPECT_EQ(ToPath("rss_Wl2_Acl_R0"), "/Device/Wireless2.4/AccessControl/R0");
  EXPECT_EQ(ToPath("rss_Wl2_Acl_R03"), "/Device/Wireless2.4/AccessControl/R03");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_S"), "/WirelessSiteSurvey/S");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_S0"), "/WirelessSiteSurvey/S0");
  EXPECT_EQ(ToPath("rss_Ext_Ssv_S07"), "/WirelessSiteSurvey/S07");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/Site:"), "rss_Ext_Ssv_Site:");
  EXPECT_EQ(ToName("/WirelessSiteSurvey/Site:0"), "rss_Ext_Ssv_Site:0");
}

TEST(NamesTest, NamesBeginWithTheirPrefix) {
  for (const char* name : {"", "r", "rss", "rss-X", "Rss_DeviceName", "RSS_X", " rss_DeviceName",
                           "xrss_DeviceName", "DeviceName", "/Device/DeviceName"}) {
    EXPECT_EQ(ToPath(name), std::nullopt) << name;
  }
}

TEST(NamesTest, NothingOrBlanksGiveNull) {
  for (const std::string blanks : {"", " ", "\t", "\r\n", " \t\r\n "}) {
    EXPECT_EQ(ToPath("rss_" + blanks), std::nullopt) << blanks.size();
    EXPECT_EQ(ToName(blanks), std::nullopt) << blanks.size();
  }
  EXPECT_EQ(cvtRss_XmlPathVsVarName(nullptr, 0), nullptr);
  EXPECT_EQ(cvtRss_XmlPathVsVarName(nullptr, 1), nullptr);
}

TEST(NamesTest, BlanksAroundTheTextAreNotKept) {
  EXPECT_EQ(ToPath("rss_  Upl_IP"), "/Device/UpLinkConnection/IP");
  EXPECT_EQ(ToPath("rss_\t\r\n DeviceName"), "/Device/DeviceName");
  EXPECT_EQ(ToName(" \t\r\n/Device/DeviceName"), "rss_DeviceName");
  EXPECT_EQ(ToPath("rss_Upl_IP \t\r\n"), "/Device/UpLinkConnection/IP");
  EXPECT_EQ(ToName("/Device/UpLinkConnection/IP\n"), "rss_Upl_IP");
  EXPECT_EQ(ToPath("rss_Upl_ "), "/Device/UpLinkConnection/");
  EXPECT_EQ(ToName("/Device/ \n"), "rss_");
  EXPECT_EQ(ToPath("rss_Upl_ I P"), "/Device/UpLinkConnection/ I P") << "blanks inside stay";
  EXPECT_EQ(ToPath("rss_ \v"), "/Device/\v") << "only blank, tab, return and line feed count";
}

// Quirk "device-takes-every-prefix": such a path and the one it is taken for share a name.
TEST(NamesTest, ElementsOfTheDeviceMayLookLikeOtherSections) {
  EXPECT_EQ(ToName("/Device/Upl_IP"), "rss_Upl_IP");
  EXPECT_EQ(ToPath("rss_Upl_IP"), "/Device/UpLinkConnection/IP");
}

TEST(NamesTest, AnyNonZeroDirectionIsToPath) {
  EXPECT_EQ(Convert("rss_DeviceName", -1), "/Device/DeviceName");
  EXPECT_EQ(Convert("rss_DeviceName", 256), "/Device/DeviceName");
}

TEST(NamesTest, ResultsShareOneBufferThatEachCallEmpties) {
  const char* const first = cvtRss_XmlPathVsVarName("rss_DeviceName", 1);
  ASSERT_STREQ(first, "/Device/DeviceName");
  EXPECT_EQ(cvtRss_XmlPathVsVarName("/Device/X", 0), first);
  EXPECT_STREQ(first, "rss_X");
  EXPECT_EQ(cvtRss_XmlPathVsVarName("/Foo/X", 0), nullptr);
  EXPECT_STRNE(first, "rss_X") << "a failure keeps no result";
  ASSERT_EQ(cvtRss_XmlPathVsVarName("rss_Upl_IP", 1), first);
  EXPECT_EQ(cvtRss_XmlPathVsVarName("not a name", 1), nullptr);
  EXPECT_STREQ(first, "");
}

TEST(NamesTest, EarlierCallsDoNotMatter) {
  const std::string before[] = {"rss_" + std::string(100, 'x'), "rss_Wl2_Acl_R12_MAC", "none"};
  for (const std::string& text : before) {
    ToPath(text);
    EXPECT_EQ(ToPath("rss_a"), "/Device/a");
    ToPath(text);
    EXPECT_EQ(ToName("/Device/a"), "rss_a");
    ToPath(text);
    EXPECT_EQ(ToPath("rss_"), std::nullopt);
  }
}

TEST(NamesTest, LongestResultIsWhole) {
  const std::string rest(kLongest - std::string("/Device/").size(), 'x');
  EXPECT_EQ(ToPath("rss_" + rest), "/Device/" + rest);
  const std::string name(kLongest - std::string("rss_").size(), 'y');
  EXPECT_EQ(ToName("/Device/" + name), "rss_" + name);
}

// A longer result is cut or null, never longer.
TEST(NamesTest, LongerResultsAreBounded) {
  struct Prefixes {
    std::string from;
    std::string to;
    int to_path;
  };
  const Prefixes prefixes[] = {
      {"rss_", "/Device/", 1},
      {"rss_Upl_Ets_", "/Device/UpLinkConnection/ExtenderSite/", 1},
      {"rss_Wl2_Acl_R03_", "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:03/", 1},
      {"/Device/", "rss_", 0},
      {"/WirelessSiteSurvey/Site:07/", "rss_Ext_Ssv_S07_", 0},
  };
  for (const Prefixes& item : prefixes) {
    for (const std::size_t length : {1U, 60U, 73U, 74U, 111U, 112U, 119U, 120U, 123U, 124U, 125U,
                                     126U, 127U, 128U, 200U, 4096U, 100000U}) {
      const std::string rest(length, 'z');
      const std::string whole = item.to + rest;
      const std::optional<std::string> result = Convert(item.from + rest, item.to_path);
      if (whole.size() <= kLongest) {
        EXPECT_EQ(result, whole) << length;
      } else if (result.has_value()) {
        EXPECT_EQ(*result, whole.substr(0, kLongest)) << length;
      }
    }
  }
}

TEST(NamesTest, EveryPrefixOfANameAtTheEndOfItsMemory) {
  for (const std::string text :
       {"rss_Wl2_Acl_R03_MAC", "rss_Wl5_Acl_AcRuleNo", "rss_Ext_Ssv_S07_BSSID",
        "rss_Ext_Ssv_SiteNo", "rss_Upl_Ets_WirelessName", "rss_Ext_Fwu_Vendor",
        "/Device/Wireless5/AccessControl/WlAcLists/AcRule:03/MAC", "/WirelessSiteSurvey/Site:07/X",
        "/WirelessSiteSurvey/Site#", "/Device/UpLinkConnection/ExtenderSite/X"}) {
    for (std::size_t length = 0; length <= text.size(); ++length) {
      const std::string part = text.substr(0, length);
      EXPECT_EQ(ToPath(part).has_value(), text.front() == 'r' && length > 4) << part;
      const std::optional<std::string> name = ToName(part);
      if (name.has_value()) {
        EXPECT_EQ(name->compare(0, 4, "rss_"), 0) << part;
        EXPECT_EQ(name->find('/'), std::string::npos) << part;
      }
    }
  }
}

}  // namespace
}  // namespace kio::test
