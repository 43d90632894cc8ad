// The older dialect, format version 1.0.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

const Texts kAuto = {"/lan/wireless2.4:1/encryptiontype=AUTO", "/sys/factorydefault=0"};

class Version10Test : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreVersion10Device();
  }

  static std::string Uplink(const std::string& name) { return "Device/UpLinkConnection/" + name; }

  static void AddSite(Document& document) {
    const std::string site = "Device/ExtenderSite/";
    document.Set(site + "Survey", "0").Set(site + "ConnRefSiteBSSID", "02:98");
    document.Set(site + "WirelessType", "5").Set(site + "WirelessName", "Other");
    document.Set(site + "EncryptionKey", "other-key");
  }
};

TEST_F(Version10Test, WritesOnlyTheEncryptionType) {
  EXPECT_EQ(Parse(Version10Document()), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Changes(), kAuto);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 10));
  EXPECT_EQ(rssXmlData.upLink.mtu, 1400);
  Host().ClearCalls();
  EXPECT_EQ(Parse(Version10Document()), 1);
  EXPECT_TRUE(Changes().empty()) << "nothing is always written in this version";
}

TEST_F(Version10Test, DocumentOfVersion11IsRefused) {
  log_file::Start(4);
  EXPECT_EQ(Parse(SampleDocument()), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(1, "", 0));
  EXPECT_THAT(log_file::Contents(),
              ::testing::HasSubstr("Wrong Spec Version! Device=1.0, XML=1.1\n"));
}

TEST_F(Version10Test, RadiosAreReadUpToTheKey) {
  Document document = Version10Document();
  document.Set("Device/Wireless5/Channel", "nonsense");
  document.Set("Device/Wireless5/EncryptionType", "nonsense");
  document.Set("Device/Wireless5/AccessControl/WlAcEnbl", "9");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_STREQ(rssXmlData.wlan[1].channel, "");
  EXPECT_EQ(rssXmlData.wlan[1].wlAcEnbl, 0);
}

TEST_F(Version10Test, EasyRoamingIsNotRead) {
  Document document = Version10Document();
  EXPECT_EQ(Parse(document.Set("Device/EasyRoaming", "roam-2")), 1);
  EXPECT_EQ(Changes(), kAuto);
}

TEST_F(Version10Test, HardwareTypeIsNeitherComparedWithTheSupportNorWritten) {
  Host().Set("/uplink/hardwaresupport", "");
  Document document = Version10Document();
  UseHardware(document, "VDSL");
  document.Remove(Uplink("DSL/CountryName"));
  EXPECT_EQ(Parse(document), 0) << "verification asks for a country that is not read";
  EXPECT_EQ(rssXmlData.setResult, 3);
  EXPECT_STREQ(rssXmlData.setMsg, "Device/Uplink/DSL/CountryName");
  UseHardware(document, "Ethernet");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Host().Text("/uplink/hardwaretype"), "Ethernet");
}

TEST_F(Version10Test, PlainDsl) {
  log_file::Start(7);
  Document document = Version10Document();
  UseHardware(document, "DSL");
  document.Set(Uplink("DSL/VPI"), "1").Set(Uplink("DSL/VCI"), "40");
  document.Set(Uplink("DSL/EncapsulationMode"), " vcmux ");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Host().Text("/uplink/dsl/vpi"), "1");
  EXPECT_EQ(Host().Text("/uplink/dsl/vci"), "40");
  EXPECT_EQ(Host().Text("/uplink/dsl/encapsulationmode"), "VcMux");
  EXPECT_EQ(rssXmlData.upLink.dsl.encapModeCode, 1);
  EXPECT_STREQ(rssXmlData.upLink.dsl.countryName, "");
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("Rss EncapsulationMode='VcMux' -> 1\n"));
}

TEST_F(Version10Test, EncapsulationFaultBorrowsTheNameOfTheEncryptionMode) {
  Document document = Version10Document();
  UseHardware(document, "DSL");
  EXPECT_EQ(Parse(document.Set(Uplink("DSL/EncapsulationMode"), "other")), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Uplink/DSL/EncryptionMode", 0));
}

TEST_F(Version10Test, ExtenderSiteUnderTheDevice) {
  for (const char* extender : {"1", "3"}) {
    StoreVersion10Device();
    log_file::Start(7);
    Document document = Version10Document();
    AddSite(document);
    EXPECT_EQ(Parse(document.Set("Device/ExtenderEnbl", extender)), 1) << rssXmlData.setMsg;
    EXPECT_EQ(Host().Text("/uplink/extendersite/wirelessname"), "Other");
    EXPECT_EQ(Host().Text("/uplink/extendersite/wirelesstype"), "5");
    EXPECT_THAT(log_file::Contents(),
                ::testing::HasSubstr("Rss ExtenderEnbl=" + std::string(extender) + "\n"));
    EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("Rss WirelessType='5' -> 1\n"));
  }
}

TEST_F(Version10Test, OtherExtenderModesReadNoSite) {
  for (const char* extender : {"0", "2", "4", "-1"}) {
    Document document = Version10Document();
    EXPECT_EQ(Parse(document.Set("Device/ExtenderEnbl", extender)), 1) << rssXmlData.setMsg;
    AddSite(document);
    EXPECT_EQ(Parse(document), 1);
    EXPECT_EQ(Host().Text("/uplink/extendersite/wirelessname"), "Upstream");
  }
}

TEST_F(Version10Test, SurveyOfTheSiteUnderTheDevice) {
  Document document = Version10Document();
  document.Set("Device/ExtenderEnbl", "3").Set("Device/ExtenderSite/Survey", "1");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Changes(), (Texts{"/uplink/extendersite/survey=1"}));
  EXPECT_EQ(rssXmlData.exeflag, 64);
}

TEST_F(Version10Test, FaultsOfTheSiteUnderTheDeviceAreToldBelowTheUplink) {
  Document document = Version10Document();
  AddSite(document);
  document.Set("Device/ExtenderEnbl", "1").Set("Device/ExtenderSite/WirelessType", "6");
  EXPECT_EQ(Parse(document), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Uplink/ExtenderSite/WirelessType", 0));
}

TEST_F(Version10Test, OtherHardwareReadsNoSiteUnderTheDevice) {
  Document document = Version10Document();
  UseHardware(document, "DSL");
  EXPECT_EQ(Parse(document.Set("Device/ExtenderEnbl", "1")), 1) << rssXmlData.setMsg;
}

TEST_F(Version10Test, ExtenderIsReadWhenTheUplinkIsFixed) {
  Host().Set("/uplink/configurable", 0);
  Document document = Version10Document();
  document.Remove("Device/UpLinkConnection").Remove("Device/ExtenderEnbl");
  EXPECT_EQ(Parse(document), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(2, "Device/ExtenderEnbl", 0));
}

}  // namespace
}  // namespace kio::test
