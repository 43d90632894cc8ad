// Firmware information and site survey results.
#include <string>

#include "variables/variables.h"

namespace kio::test {
namespace {

class ExtraVariableTest : public VariableTest {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    Host().Set("/runtime/zentrolinks/lanip", "192.168.1.1");
    Host().Set("/zentrolinks/rsshttpport", "80");
  }
};

TEST_F(ExtraVariableTest, FirmwareUrlHasItsKeywordsReplaced) {
  Host().Set("/fwupgradeinfo/fwupgradeurl", "http://$lanip:$rssport/a?ip=$lanip");
  EXPECT_EQ(Read("rss_Ext_Fwu_FwUpgradeURL"),
            (Answer{0, "http://192.168.1.1:80/a?ip=192.168.1.1"}));
  ASSERT_FALSE(Host().calls().empty());
  EXPECT_EQ(Host().calls().front().path, "/fwupgradeinfo/FwUpgradeURL");
  EXPECT_EQ(ReadPath("rss_Ext_Fwu_FwUpgradeURL"), (Answer{0, "/fwupgradeinfo/FwUpgradeURL"}));
}

TEST_F(ExtraVariableTest, FirmwareUrlMayBeAbsent) {
  EXPECT_EQ(Read("rss_Ext_Fwu_FwUpgradeURL"), (Answer{0, ""}));
}

TEST_F(ExtraVariableTest, LongFirmwareUrlsStayInTheBuffer) {
  std::string keywords;
  while (keywords.size() < 600) {
    keywords += "$lanip";
  }
  for (const std::string& url :
       {std::string(127, 'u'), std::string(128, 'u'), std::string(4000, 'u'), keywords,
        std::string(120, 'u') + "$lanip", std::string(100, 'u') + keywords}) {
    Host().Set("/fwupgradeinfo/fwupgradeurl", url);
    const Answer answer = Read("rss_Ext_Fwu_FwUpgradeURL");
    EXPECT_EQ(answer.code, 0U);
    EXPECT_LE(answer.text.size(), 127U);
    const std::string begin = url.front() == 'u' ? std::string(100, 'u') : "192.168.1.1192.168.1.1";
    EXPECT_EQ(answer.text.substr(0, begin.size()), begin);
  }
}

TEST_F(ExtraVariableTest, FirmwareInformationIsReadOnly) {
  Host().Set("/fwupgradeinfo/fwupgradeurl", "u");
  for (const int mode : {0, kPath, kWrite, kValidate, kWrite | kValidate}) {
    EXPECT_EQ(Call("rss_Ext_Fwu_FwUpgradeURL", mode, "x"), (Answer{2, "x"})) << mode;
  }
  EXPECT_TRUE(Host().calls().empty());
}

class SiteTest : public ExtraVariableTest {
 protected:
  void SetUp() override {
    ExtraVariableTest::SetUp();
    SetSites(2);
    for (int instance = 1; instance <= 101; ++instance) {
      Host().Set("/wirelesssitesurvey/site:" + std::to_string(instance) + "/bssid",
                 "instance " + std::to_string(instance));
    }
  }

  static void SetSites(int number) { Host().Set("/wirelesssitesurvey/site#", number); }
};

// Quirk "sites-from-two": access rules count from one.
TEST_F(SiteTest, TheFirstSiteIsTheSecondInstance) {
  EXPECT_EQ(Read("rss_Ext_Ssv_S00_BSSID"), (Answer{0, "instance 2"}));
  EXPECT_EQ(Read("rss_Ext_Ssv_S01_BSSID"), (Answer{0, "instance 3"}));
  EXPECT_EQ(ReadPath("rss_Ext_Ssv_S00_BSSID"), (Answer{0, "/wirelesssitesurvey/site:2/BSSID"}));
  SetSites(100);
  EXPECT_EQ(Read("rss_Ext_Ssv_S99_BSSID"), (Answer{0, "instance 101"}));
  EXPECT_EQ(ReadPath("rss_Ext_Ssv_S99_BSSID"), (Answer{0, "/wirelesssitesurvey/site:101/BSSID"}));
}

TEST_F(SiteTest, SitesBeyondTheNumberAreUnknown) {
  EXPECT_EQ(Read("rss_Ext_Ssv_S02_BSSID"), (Answer{2, ""}));
  EXPECT_EQ(ReadPath("rss_Ext_Ssv_S02_BSSID"), (Answer{2, ""}));
  EXPECT_EQ(Read("rss_Ext_Ssv_S99_BSSID"), (Answer{2, ""}));
  for (const int number : {0, -1}) {
    SetSites(number);
    EXPECT_EQ(Read("rss_Ext_Ssv_S00_BSSID"), (Answer{2, ""}));
  }
  Host().Reset();
  EXPECT_EQ(Read("rss_Ext_Ssv_S00_BSSID"), (Answer{2, ""}));
}

TEST_F(SiteTest, TheNumberIsTheStores) {
  EXPECT_EQ(Read("rss_Ext_Ssv_SiteNo"), (Answer{0, "2"}));
  SetSites(117);
  EXPECT_EQ(Read("rss_Ext_Ssv_SiteNo"), (Answer{0, "117"}));
  SetSites(0);
  EXPECT_EQ(Read("rss_Ext_Ssv_SiteNo"), (Answer{0, "0"}));
}

TEST_F(SiteTest, AnAbsentNumberIsToldAsTheStoreGivesIt) {
  Host().Reset();
  EXPECT_EQ(Read("rss_Ext_Ssv_SiteNo"), (Answer{0, "-1"}));
}

TEST_F(SiteTest, OtherNamesAreUnknown) {
  SetSites(100);
  for (const char* field : {"S",
                            "S_",
                            "S0",
                            "S00",
                            "S00_",
                            "S0_BSSID",
                            "S_BSSID",
                            "Sxy_BSSID",
                            "S0x_BSSID",
                            "S-1_BSSID",
                            "S 1_BSSID",
                            "s00_BSSID",
                            "R00_BSSID",
                            "S00_bssid",
                            "S00_X",
                            "S00_BSSID_",
                            "S00_BSSID_X",
                            "S000_BSSID",
                            "S00x_BSSID",
                            "S00_Channel",
                            "S00_EncryptionKey",
                            "SiteNo_",
                            "SiteNo_X",
                            "SiteNoX",
                            "siteno",
                            "Site",
                            "Site_No",
                            "S00_WirelessStrength_X"}) {
    const std::string name = std::string("rss_Ext_Ssv_") + field;
    EXPECT_EQ(Read(name), (Answer{2, ""})) << field;
    EXPECT_EQ(ReadPath(name), (Answer{2, ""})) << field;
    EXPECT_EQ(Write(name, "1"), (Answer{2, "1"})) << field;
  }
}

TEST_F(SiteTest, OtherGroupsAreUnknown) {
  for (const char* name : {"rss_Ext",
                           "rss_Ext_",
                           "rss_Ext_X",
                           "rss_Ext_Fwu",
                           "rss_Ext_Fwu_",
                           "rss_Ext_Fwu_X",
                           "rss_Ext_Fwu_vendor",
                           "rss_Ext_Fwu_Vendor_",
                           "rss_Ext_Fwu_Vendor_X",
                           "rss_Ext_Fwux_Vendor",
                           "rss_Ext_Ssv",
                           "rss_Ext_Ssv_",
                           "rss_Ext_Ssvx_SiteNo",
                           "rss_Ext_Apc_X",
                           "rss_Ext_Vyr_X",
                           "rss_Ext_Dsl_X",
                           "rss_Ext_Apn_X",
                           "rss_Ext_Vendor",
                           "rss_Ext_Fwu_Validate",
                           "rss_Ext_Validate",
                           "rss_Ext_SiteNo",
                           "rss_ext_Ssv_SiteNo"}) {
    for (const int mode : {kRead, kRead | kPath, kRead | kWrite, kRead | kValidate}) {
      EXPECT_EQ(Call(name, mode, "1"), (Answer{2, ""})) << name << " mode " << mode;
    }
    for (const int mode : {0, kWrite, kValidate, kPath}) {
      EXPECT_EQ(Call(name, mode, "1"), (Answer{2, "1"})) << name << " mode " << mode;
    }
  }
  EXPECT_TRUE(Host().Writes().empty());
}

}  // namespace
}  // namespace kio::test
