// The parsers of single sections that a host may call.
#include <gmock/gmock.h>

#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/lost_keys.h"
#include "support/exchange.h"
#include "support/guarded_text.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class SectionTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    rssXmlData.specVer = 101;
    Reports().clear();
    XmlErrMsg_LostKey = Record;
  }
};

TEST_F(SectionTest, Version) {
  const GuardedText text("<v><major>2</major><minor>13</minor></v>");
  RssSpecVersion version{};
  EXPECT_EQ(do_XmlSpecVersion_Parser(nullptr, text.get(), 0, &version, "V"), 1);
  EXPECT_EQ(version.major, 2);
  EXPECT_EQ(version.minor, 13);
  EXPECT_EQ(version.combined, 213);
  EXPECT_STREQ(version.path, "V");
  EXPECT_EQ(do_XmlSpecVersion_Parser("Parent", text.get(), 0, &version, "v"), 1);
  EXPECT_STREQ(version.path, "Parent/v");
  EXPECT_EQ(do_XmlSpecVersion_Parser("Parent", text.get(), 39, &version, "v"), 0);
}

TEST_F(SectionTest, VersionPathFitsItsField) {
  const GuardedText text("<v><major>2</major><minor>13</minor></v>");
  RssSpecVersion version{};
  const std::string parent(200, 'p');
  EXPECT_EQ(do_XmlSpecVersion_Parser(parent.c_str(), text.get(), 0, &version, "v"), 1);
  EXPECT_EQ(version.path, std::string(31, 'p'));
  EXPECT_EQ(version.combined, 213);
}

TEST_F(SectionTest, VersionWithoutItsParts) {
  RssSpecVersion version{};
  const GuardedText none("<a></a>");
  EXPECT_EQ(do_XmlSpecVersion_Parser("P", none.get(), 0, &version, "v"), 0);
  const GuardedText no_major("<v><minor>1</minor></v>");
  EXPECT_EQ(do_XmlSpecVersion_Parser("P", no_major.get(), 0, &version, "v"), 0);
  const GuardedText no_minor("<v><major>1</major></v>");
  EXPECT_EQ(do_XmlSpecVersion_Parser(nullptr, no_minor.get(), 0, &version, "v"), 0);
  EXPECT_EQ(Reports(),
            (std::vector<Report>{{std::nullopt, "v"}, {"P/v", "major"}, {"v", "minor"}}));
}

TEST_F(SectionTest, Provider) {
  const GuardedText text(
      "<DSL><CountryName>N&amp;N</CountryName><IspName>F</IspName><VPI>5</VPI></DSL>");
  RssIsp isp{};
  EXPECT_EQ(do_RssISP_Parser("Up", text.get(), 0, &isp, "DSL"), 1);
  EXPECT_STREQ(isp.countryName, "N&N");
  EXPECT_STREQ(isp.ispName, "F");
  EXPECT_EQ(isp.vpi, 0);
  EXPECT_STREQ(isp.path, "Up/DSL");
}

TEST_F(SectionTest, ProviderTextsAreCutAt127Characters) {
  const GuardedText text("<APN><CountryName>" + std::string(300, 'c') + "</CountryName><IspName>" +
                         std::string(300, 'i') + "</IspName></APN>");
  RssIsp isp{};
  EXPECT_EQ(do_RssISP_Parser("Up", text.get(), 0, &isp, "APN"), 1);
  EXPECT_EQ(isp.countryName, std::string(127, 'c'));
  EXPECT_EQ(isp.ispName, std::string(127, 'i'));
}

TEST_F(SectionTest, ProviderWithoutItsParts) {
  RssIsp isp{};
  const GuardedText none("<a></a>");
  EXPECT_EQ(do_RssISP_Parser("Up", none.get(), 0, &isp, "APN"), 0);
  const GuardedText no_name("<APN><CountryName>c</CountryName></APN>");
  EXPECT_EQ(do_RssISP_Parser("Up", no_name.get(), 0, &isp, "APN"), 0);
  EXPECT_EQ(Reports(), (std::vector<Report>{{std::nullopt, "APN"}, {"Up/APN", "IspName"}}));
}

TEST_F(SectionTest, ProviderOfVersion10ReadsOnlyPlainDsl) {
  log_file::Start(7);
  rssXmlData.specVer = 100;
  const GuardedText text(
      "<DSL><VPI>5</VPI><VCI>6x</VCI><EncapsulationMode>\tllc </EncapsulationMode>"
      "<CountryName>c</CountryName></DSL>");
  RssIsp isp{};
  for (const int code : {-1, 0, 1, 2, 3, 4}) {
    rssXmlData.upLink.hardwareTypeCode = code;
    EXPECT_EQ(do_RssISP_Parser("Up", text.get(), 0, &isp, "DSL"), 1);
    EXPECT_EQ(isp.vpi, 0);
    EXPECT_STREQ(isp.countryName, "");
  }
  rssXmlData.upLink.hardwareTypeCode = 5;
  EXPECT_EQ(do_RssISP_Parser("Up", text.get(), 0, &isp, "DSL"), 1);
  EXPECT_EQ(isp.vpi, 5);
  EXPECT_EQ(isp.vci, 6);
  EXPECT_STREQ(isp.encapsulationMode, "LLC");
  EXPECT_EQ(isp.encapModeCode, 0);
  EXPECT_STREQ(isp.countryName, "");
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("Rss EncapsulationMode='LLC' -> 0\n"));
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("1000:do_RssISP_Parser]Up"));
}

TEST_F(SectionTest, UnknownEncapsulation) {
  rssXmlData.specVer = 100;
  rssXmlData.upLink.hardwareTypeCode = 5;
  const GuardedText text(
      "<DSL><VPI>5</VPI><VCI>6</VCI><EncapsulationMode>MPOA</EncapsulationMode></DSL>");
  RssIsp isp{};
  EXPECT_EQ(do_RssISP_Parser("Up", text.get(), 0, &isp, "DSL"), 1);
  EXPECT_EQ(isp.encapModeCode, -1);
  EXPECT_STREQ(isp.encapsulationMode, "MPOA");
}

std::string Site(const std::string& survey) {
  return "<ExtenderSite><Survey>" + survey +
         "</Survey><ConnRefSiteBSSID>02:00:00:00:99:0123</ConnRefSiteBSSID>"
         "<WirelessType> 2.4 </WirelessType><WirelessName>1234567890123456&amp;</WirelessName>"
         "<EncryptionKey>abcdefghijklmnopqrstuvwxyz</EncryptionKey></ExtenderSite>";
}

TEST_F(SectionTest, ExtenderSite) {
  log_file::Start(7);
  const GuardedText text(Site("0"));
  RssExtenderSite site{};
  site.wirelessTypeCode = 9;
  EXPECT_EQ(do_RssExtender_Parser("Up", text.get(), 0, &site), 1);
  EXPECT_EQ(site.survey, 0);
  EXPECT_STREQ(site.connRefSiteBssid, "02:00:00:00:99:01");
  EXPECT_STREQ(site.wirelessType, "2.4");
  EXPECT_EQ(site.wirelessTypeCode, 0);
  EXPECT_STREQ(site.wirelessName, "1234567890123456&") << "17 raw characters divide the entity";
  EXPECT_STREQ(site.encryptionKey, "abcdefghijklmnopq");
  EXPECT_STREQ(site.path, "Up/ExtenderSite");
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("Rss WirelessType='2.4' -> 0\n"));
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("1000:do_RssExtender_Parser]Up"));
}

TEST_F(SectionTest, SurveyReadsNothingMore) {
  for (const char* survey : {"1", "2", "-1"}) {
    RssExtenderSite site{};
    const GuardedText text(Site(survey));
    EXPECT_EQ(do_RssExtender_Parser("Up", text.get(), 0, &site), 1);
    EXPECT_EQ(site.survey, std::stoi(survey));
    EXPECT_STREQ(site.connRefSiteBssid, "");
    EXPECT_STREQ(site.wirelessName, "");
  }
}

TEST_F(SectionTest, ExtenderSiteWithoutItsParts) {
  RssExtenderSite site{};
  const GuardedText none("<a></a>");
  EXPECT_EQ(do_RssExtender_Parser("Up", none.get(), 0, &site), 0);
  const GuardedText no_key("<ExtenderSite><Survey>0</Survey></ExtenderSite>");
  EXPECT_EQ(do_RssExtender_Parser("Up", no_key.get(), 0, &site), 0);
  EXPECT_EQ(Reports(), (std::vector<Report>{{std::nullopt, "ExtenderSite"},
                                            {"Up/ExtenderSite", "ConnRefSiteBSSID"}}));
}

}  // namespace
}  // namespace kio::test
