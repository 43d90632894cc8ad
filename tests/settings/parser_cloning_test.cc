// Documents with settings copied from another access point.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ParserCloningTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  // What a cloning document holds: the radios and the security service.
  static Document CloningDocument() {
    Document document = SampleDocument();
    document.Remove("Device/DeviceName").Remove("Device/DevicePwd").Remove("Device/RouterEnbl");
    return document.Remove("Device/UpLinkConnection");
  }
};

TEST_F(ParserCloningTest, NeedsNoDeviceSettingsAndNoUplink) {
  Document document = CloningDocument();
  document.Set("Device/Wireless5/WirelessName", "Copied");
  EXPECT_EQ(ParseCloning(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 10));
  EXPECT_EQ(Host().Text("/lan/wireless5:1/wirelessname"), "Copied");
  EXPECT_EQ(rssXmlData.exeflag, 8 + 32);
}

TEST_F(ParserCloningTest, DeviceSettingsAreNotRead) {
  Document document = SampleDocument();
  document.SetFirst("Device/Configurable", "0");
  document.Set("Device/DeviceName", "Hall").Set("Device/RouterEnbl", "9");
  document.Set("Device/UpLinkConnection/ConnType", "Nonsense");
  document.Set("Device/Wireless5/Channel", "44");
  EXPECT_EQ(ParseCloning(document), 1) << rssXmlData.setMsg;
  EXPECT_STREQ(rssXmlData.deviceName, "");
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Kitchen");
  EXPECT_EQ(Host().Text("/uplink/conntype"), "DHCP");
  EXPECT_EQ(Host().Text("/lan/wireless5:1/channel"), "44");
}

TEST_F(ParserCloningTest, SafetyVyrIsReadButNeitherVerifiedNorApplied) {
  Document document = CloningDocument();
  document.Set("Device/SafetyVyr/UrlDetectEnbl", "9");
  EXPECT_EQ(ParseCloning(document), 1);
  EXPECT_EQ(rssXmlData.safetyVyr.urlDetectEnbl, 9);
  EXPECT_EQ(Host().Text("/safetyvyr/urldetectenbl"), "0");
  EXPECT_EQ(ParseCloning(document.Remove("Device/SafetyVyr/UrlDetectEnbl")), 0);
  EXPECT_STREQ(rssXmlData.setMsg, "Device/SafetyVyr/UrlDetectEnbl");
}

TEST_F(ParserCloningTest, EasyRoamingIsOptional) {
  Document document = CloningDocument();
  EXPECT_EQ(ParseCloning(document.Set("Device/EasyRoaming", "roam-2")), 1);
  EXPECT_EQ(Host().Text("/zentrolinks/easyroaminginfo"), "roam-2");
  EXPECT_EQ(ParseCloning(document.Remove("Device/EasyRoaming")), 1);
  EXPECT_STREQ(rssXmlData.setMsg, "");
}

// An element that is not there reads as an empty text, optional or not.
TEST_F(ParserCloningTest, MissingEasyRoamingIsAnEmptyOne) {
  Document document = CloningDocument();
  EXPECT_EQ(ParseCloning(document.Remove("Device/EasyRoaming")), 1);
  EXPECT_STREQ(rssXmlData.easyRoaming, "");
  EXPECT_EQ(Host().Text("/zentrolinks/easyroaminginfo"), "");
}

TEST_F(ParserCloningTest, RadiosAreRequired) {
  Document document = CloningDocument();
  EXPECT_EQ(ParseCloning(document.Remove("Device/Wireless5")), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(2, "Wireless5", 0));
}

TEST_F(ParserCloningTest, UnusableChannelBecomesZero) {
  Document document = CloningDocument();
  EXPECT_EQ(ParseCloning(document.Set("Device/Wireless5/Channel", "149")), 1);
  EXPECT_EQ(Host().Text("/lan/wireless5:1/channel"), "0");
}

TEST_F(ParserCloningTest, VersionIsComparedAllTheSame) {
  Document document = CloningDocument();
  EXPECT_EQ(ParseCloning(document.Set("specVersion/minor", "2")), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(1, "", 0));
}

TEST_F(ParserCloningTest, ModeStaysUntilTheNextParse) {
  EXPECT_EQ(ParseCloning(CloningDocument()), 1);
  EXPECT_EQ(rssXmlData.apCloningOnly, 1);
  std::string text = CloningDocument().Text();
  EXPECT_EQ(do_RssXml_Parser_(text.data()), 1) << "the shared body keeps the mode";
  EXPECT_EQ(rssXmlData.apCloningOnly, 1);
  EXPECT_EQ(Parse(CloningDocument()), 0);
  EXPECT_EQ(rssXmlData.apCloningOnly, 0);
  EXPECT_EQ(rssXmlData.setResult, 2);
}

TEST_F(ParserCloningTest, Version10NeedsNoExtenderSettings) {
  StoreVersion10Device();
  Document document = Version10Document();
  document.Remove("Device/ExtenderEnbl").Remove("Device/UpLinkConnection");
  document.Remove("Device/DeviceName").Set("Device/Wireless5/WirelessName", "Copied");
  EXPECT_EQ(ParseCloning(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Host().Text("/lan/wireless5:1/wirelessname"), "Copied");
}

TEST_F(ParserCloningTest, ExtenderDeviceKeepsWhatItCloned) {
  Host().Set("/uplink/hardwaretype", "WWan802.11");
  Host().Set("/lan/wireless5:1/wlenbl", 2);
  Document document = CloningDocument();
  EXPECT_EQ(ParseCloning(document.Remove("Device/Wireless5")), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Host().Text("/uplink/extendersite/wirelessname"), "Home");
  EXPECT_EQ(Host().Text("/uplink/extendersite/connrefsitebssid"), "02:00:00:00:24:01");
  EXPECT_EQ(Host().Text("/runtime/apcloninginfo/extendersite/channel"), "6");
  EXPECT_EQ(rssXmlData.exeflag, 1 + 32);
}

}  // namespace
}  // namespace kio::test
