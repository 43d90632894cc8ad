// The record in the log.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using Lines = std::vector<std::string>;

class DumpTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    FillSampleRecord();
  }

  static Lines Dump() {
    log_file::Start(6);
    dump_RssXmlData();
    return log_file::Lines();
  }

  // The lines of the uplink after its "restart" line, up to the first radio.
  static Lines HardwareLines() {
    const Lines lines = Dump();
    auto begin = std::find(lines.begin(), lines.end(), "     +- restart='0'");
    auto end = std::find(lines.begin(), lines.end(), " +- Device/Wireless2.4");
    return begin < end ? Lines(begin + 1, end) : Lines{"no uplink"};
  }
};

TEST_F(DumpTest, RoamingLineNeedsTheFeature) {
  const std::string line = " +- EasyRoaming=roam-1";
  for (const int cloning : {0, 1}) {
    FillSampleRecord();
    rssXmlData.apCloningOnly = static_cast<unsigned char>(cloning);
    rssXmlData.easyRoamingFeature = 0;
    EXPECT_THAT(Dump(), ::testing::Not(::testing::Contains(line))) << cloning;
    rssXmlData.easyRoamingFeature = 1;
    EXPECT_THAT(Dump(), ::testing::Contains(line)) << cloning;
  }
  rssXmlData.specVer = 100;
  EXPECT_THAT(Dump(), ::testing::Not(::testing::Contains(line)));
}

const Lines kDslLines = {"     +- Device/Uplink/DSL", "         +- CountryName=Norway",
                         "         +- IspName=Fjord DSL"};
const Lines kDsl10Lines = {"     +- Device/Uplink/DSL", "         +- VPI/VCI=8/35",
                           "         +- EncapMode='LLC',0"};
const Lines kApnLines = {"     +- Device/Uplink/APN", "         +- CountryName=Sweden",
                         "         +- IspName=Berg Mobile"};
const Lines kSiteLines = {"     +- Device/Uplink/ExtenderSite",
                          "         +- Survey=0",
                          "         +- ConnRefSiteBSSID=02:00:00:00:99:01",
                          "         +- WirelessType='2.4',0",
                          "         +- WirelessName=Upstream",
                          "         +- EncryptionKey=upstream-key"};

TEST_F(DumpTest, HardwareLinesByCode) {
  const std::vector<std::pair<int, Lines>> rows = {{-1, {}},       {0, {}},         {1, kDslLines},
                                                   {2, kDslLines}, {3, kSiteLines}, {4, kApnLines},
                                                   {5, kDslLines}};
  for (const auto& [code, lines] : rows) {
    rssXmlData.upLink.hardwareTypeCode = code;
    EXPECT_EQ(HardwareLines(), lines) << code;
  }
}

TEST_F(DumpTest, HardwareLinesByCodeInVersion10) {
  rssXmlData.specVer = 100;
  const std::vector<std::pair<int, Lines>> rows = {
      {-1, kSiteLines}, {0, kSiteLines}, {1, kDsl10Lines}, {2, kDsl10Lines},
      {3, kSiteLines},  {4, kApnLines},  {5, kDsl10Lines}};
  for (const auto& [code, lines] : rows) {
    rssXmlData.upLink.hardwareTypeCode = code;
    for (const int extender : {0, 1, 3, 4}) {
      rssXmlData.extenderEnbl = extender;
      EXPECT_EQ(HardwareLines(), lines) << code << " " << extender;
    }
    rssXmlData.extenderEnbl = 2;
    const bool other_code = code == -1 || code == 0;
    EXPECT_EQ(HardwareLines(), other_code ? Lines{} : lines) << code << " extender off";
  }
}

TEST_F(DumpTest, AbsentRadiosAndSafetyVyrAreNotShown) {
  rssXmlData.wlan24Feature = 0;
  rssXmlData.safetyVyrFeature = 0;
  Lines lines = Dump();
  EXPECT_THAT(lines, ::testing::Not(::testing::Contains(" +- Device/Wireless2.4")));
  EXPECT_THAT(lines, ::testing::Contains(" +- Device/Wireless5"));
  EXPECT_THAT(lines, ::testing::Not(::testing::Contains(" +- Device/SafetyVyr")));
  rssXmlData.wlan5Feature = 0;
  lines = Dump();
  EXPECT_THAT(lines, ::testing::Not(::testing::Contains(" +- Device/Wireless5")));
}

TEST_F(DumpTest, AccessControlOffShowsNoRules) {
  for (const int switched : {0, 2}) {
    rssXmlData.wlan[0].wlAcEnbl = switched;
    const Lines lines = Dump();
    EXPECT_THAT(lines, ::testing::Contains("         +- WlAcEnbl=" + std::to_string(switched)));
    EXPECT_THAT(lines, ::testing::Not(::testing::Contains("         +- WlAcMode=1")));
    EXPECT_THAT(lines, ::testing::Not(::testing::Contains(
                           "         +- Device/Wireless2.4/AccessControl/AcRule:1")));
  }
}

TEST_F(DumpTest, ShowsCountersAndFlags) {
  rssXmlData.upLink.restart = 1;
  rssXmlData.wlan[0].restart = 1;
  rssXmlData.wlan[0].wlAcRuleNo = -1;
  rssXmlData.saveflag = 255;
  rssXmlData.wlanSurveyRestart = 1;
  const Lines lines = Dump();
  EXPECT_THAT(lines, ::testing::Contains("     +- restart='1'"));
  EXPECT_THAT(lines, ::testing::Contains("     +- restart=1"));
  EXPECT_THAT(lines, ::testing::Contains("+- saveflag=255"));
  EXPECT_THAT(lines, ::testing::Contains(" +- wlanSurveyRestart=1"));
}

TEST_F(DumpTest, ValuesAreNeverFormats) {
  Put(rssXmlData.deviceName, "%s%n%d");
  Put(rssXmlData.wlan[0].channel, "%n");
  Put(rssXmlData.wlan[0].acRule[0].mac, "%s%s%s");
  const Lines lines = Dump();
  EXPECT_THAT(lines, ::testing::Contains(" +- DeviceName='%s%n%d'"));
  EXPECT_THAT(lines, ::testing::Contains("     +- Channel='%n'"));
  EXPECT_THAT(lines, ::testing::Contains("             +- Active,MAC=1,%s%s%s"));
}

// Also when the document is refused, or is none.
TEST_F(DumpTest, ComesAtTheEndOfEachExchange) {
  for (const std::string& text :
       {SampleDocument().Text(), std::string("nothing"), std::string("<root></root>")}) {
    log_file::Start(6);
    Parse(text);
    const Lines lines = log_file::Lines();
    EXPECT_THAT(lines, ::testing::Contains("----RSSXML_BGN----")) << text;
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "----RSSXML_END----") << text;
  }
}

TEST_F(DumpTest, IsOfLevelSix) {
  log_file::Start(5);
  dump_RssXmlData();
  EXPECT_EQ(log_file::Contents(), "");
}

}  // namespace
}  // namespace kio::test
