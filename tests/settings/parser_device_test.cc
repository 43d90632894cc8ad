// Reading the device's and the uplink's settings from a document.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ParserDeviceTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  static RssUpLink& Up() { return rssXmlData.upLink; }
  static std::string Uplink(const std::string& name) { return "Device/UpLinkConnection/" + name; }

  // A document whose device says first that it is configurable, so that the search for that element
  // does not meet one further inside.
  static Document Configurable() {
    Document document = SampleDocument();
    document.SetFirst("Device/Configurable", "1");
    return document;
  }

  static std::vector<std::string> ChangesBelow(const std::string& stem) {
    std::vector<std::string> changes;
    for (const std::string& change : Changes()) {
      if (change.compare(0, stem.size(), stem) == 0) {
        changes.push_back(change);
      }
    }
    return changes;
  }
};

TEST_F(ParserDeviceTest, ReadsTheDevice) {
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "A &quot;B&quot;").Set("Device/DevicePwd", " pass&#38;word ");
  document.Set("Device/RouterEnbl", "0").Set("Device/EasyRoaming", "r&gt;2");
  document.Set("Device/SafetyVyr/SafetyVyrEnbl", "0").Set("Device/SafetyVyr/UrlDetectEnbl", "1");
  document.Set("Device/SafetyVyr/SafetyNotifyEnbl", "0");
  document.Set("Device/SafetyVyr/ToolRecommendEnbl", "1");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_STREQ(rssXmlData.deviceName, "A \"B\"");
  EXPECT_STREQ(rssXmlData.devicePwd, "pass&word");
  EXPECT_EQ(rssXmlData.routerEnbl, 0);
  EXPECT_STREQ(rssXmlData.easyRoaming, "r>2");
  EXPECT_EQ(rssXmlData.safetyVyr.safetyVyrEnbl, 0);
  EXPECT_EQ(rssXmlData.safetyVyr.urlDetectEnbl, 1);
  EXPECT_EQ(rssXmlData.safetyVyr.safetyNotifyEnbl, 0);
  EXPECT_EQ(rssXmlData.safetyVyr.toolRecommendEnbl, 1);
  EXPECT_STREQ(rssXmlData.safetyVyr.path, "Device/SafetyVyr");
}

TEST_F(ParserDeviceTest, TextsAreCutAt127RawCharacters) {
  Host().Set("/sys/friendlyname_validate", "2");
  Host().Set("/sys/user:1/password_validate", "2");
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "&amp;" + std::string(200, 'n'));
  document.Set("Device/DevicePwd", std::string(200, 'p'));
  document.Set("Device/EasyRoaming", std::string(200, 'e'));
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(rssXmlData.deviceName, "&" + std::string(122, 'n'));
  EXPECT_EQ(rssXmlData.devicePwd, std::string(127, 'p'));
  EXPECT_EQ(rssXmlData.easyRoaming, std::string(127, 'e'));
}

TEST_F(ParserDeviceTest, WordsAreTrimmedAndRewritten) {
  Document document = SampleDocument();
  UsePppoe(document);
  document.Set(Uplink("ConnType"), " \tpppoe\t ").Set(Uplink("HardwareType"), " ethernet ");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_STREQ(Up().connType, "PPPoE");
  EXPECT_EQ(Up().connTypeCode, 2);
  EXPECT_STREQ(Up().hardwareType, "Ethernet");
  EXPECT_EQ(Host().Text("/uplink/conntype"), "PPPoE");
}

TEST_F(ParserDeviceTest, WordsAreCutAt31RawCharacters) {
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Set(Uplink("ConnType"), std::string(27, ' ') + "DHCP")), 1);
  EXPECT_EQ(Parse(document.Set(Uplink("ConnType"), std::string(28, ' ') + "DHCP")), 0);
  EXPECT_STREQ(Up().connType, "DHC");
  EXPECT_EQ(Parse(document.Set(Uplink("ConnType"), std::string(100, 'x'))), 0);
  EXPECT_EQ(Up().connType, std::string(31, 'x'));
  document.Set(Uplink("ConnType"), "DHCP");
  EXPECT_EQ(Parse(document.Set(Uplink("HardwareType"), std::string(23, ' ') + "Ethernet")), 1);
  EXPECT_EQ(Parse(document.Set(Uplink("HardwareType"), std::string(24, ' ') + "Ethernet")), 0);
}

// A missing element is told below "UpLinkConnection", a faulty value below "Uplink".
TEST_F(ParserDeviceTest, UplinkHasTwoNamesInMessages) {
  for (const char* name : {"HardwareType", "ConnType"}) {
    Document document = SampleDocument();
    Host().ClearCommands();
    EXPECT_EQ(Parse(document.Set(Uplink(name), "Token Ring")), 0);
    EXPECT_EQ(Host().commands(), ResultCommands(3, std::string("Device/Uplink/") + name, 0));
  }
}

TEST_F(ParserDeviceTest, StaticAddressesAreCutAt15Characters) {
  Document document = SampleDocument();
  UseStatic(document);
  document.Set(Uplink("IP"), "192.168.100.1001").Set(Uplink("NetMask"), "255.255.255.000xyz");
  document.Set(Uplink("Gateway"), "192.168.100.1002").Set(Uplink("DNS"), "192.168.100.1003");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_STREQ(Up().ip, "192.168.100.100");
  EXPECT_STREQ(Up().netMask, "255.255.255.000");
  EXPECT_STREQ(Up().gateway, "192.168.100.100");
  EXPECT_STREQ(Up().dns, "192.168.100.100");
}

TEST_F(ParserDeviceTest, EmptyDnsBecomesTheDefault) {
  for (const char* markup : {"<DNS></DNS>", "<DNS/>", "<DNS />"}) {
    StoreSampleDevice();
    Document document = SampleDocument();
    UseStatic(document);
    EXPECT_EQ(Parse(document.SetMarkup(Uplink("DNS"), markup)), 1);
    EXPECT_EQ(Host().Text("/uplink/dns"), "8.8.8.8");
  }
}

TEST_F(ParserDeviceTest, LoginsAreReadForBothKindsOfPpp) {
  for (const char* word : {"PPPoE", "PPPoA"}) {
    StoreSampleDevice();
    Document document = SampleDocument();
    UsePppoe(document);
    document.Set(Uplink("ConnType"), word).Set(Uplink("LoginUserName"), "u&lt;1");
    EXPECT_EQ(Parse(document.Set(Uplink("LoginPassword"), "p&gt;1")), 1);
    EXPECT_EQ(Host().Text("/uplink/loginusername"), "u<1");
    EXPECT_EQ(Host().Text("/uplink/loginpassword"), "p>1");
    EXPECT_EQ(Host().Text("/uplink/conntype"), word);
  }
}

TEST_F(ParserDeviceTest, ProvidersOfDslAndApn) {
  Document document = SampleDocument();
  UseHardware(document, "VDSL");
  document.Set(Uplink("DSL/CountryName"), "Finland").Set(Uplink("DSL/IspName"), "Lake");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Host().Text("/uplink/dsl/countryname"), "Finland");
  EXPECT_EQ(Host().Text("/uplink/dsl/ispname"), "Lake");
  UseHardware(document, "WWanAPN");
  document.Set(Uplink("APN/CountryName"), "Estonia").Set(Uplink("APN/IspName"), "Bog");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Host().Text("/uplink/apn/countryname"), "Estonia");
  EXPECT_EQ(Host().Text("/uplink/apn/ispname"), "Bog");
  EXPECT_EQ(Host().Text("/uplink/hardwaretype"), "WWanAPN");
}

TEST_F(ParserDeviceTest, ProviderFaultIsToldWithItsSection) {
  Document document = SampleDocument();
  UseHardware(document, "ADSL");
  EXPECT_EQ(Parse(document.Set(Uplink("DSL/IspName"), " ")), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Uplink/DSL/IspName", 0));
}

TEST_F(ParserDeviceTest, ExtenderSiteTextsAreCutAt17RawCharacters) {
  Document document = SampleDocument();
  UseHardware(document, "WWan802.11");
  document.Set(Uplink("ExtenderSite/WirelessName"), std::string(40, 'w'));
  document.Set(Uplink("ExtenderSite/EncryptionKey"), std::string(40, 'k'));
  document.Set(Uplink("ExtenderSite/ConnRefSiteBSSID"), std::string(40, 'b'));
  document.Set(Uplink("ExtenderSite/WirelessType"), " 5 ");
  EXPECT_EQ(Parse(document), 1);
  const RssExtenderSite& site = Up().extenderSite;
  EXPECT_EQ(site.wirelessName, std::string(17, 'w'));
  EXPECT_EQ(site.encryptionKey, std::string(17, 'k'));
  EXPECT_EQ(site.connRefSiteBssid, std::string(17, 'b'));
  EXPECT_STREQ(site.wirelessType, "5");
  EXPECT_EQ(site.wirelessTypeCode, 1);
  EXPECT_EQ(Host().Text("/uplink/extendersite/encryptionkey"), std::string(17, 'k'));
}

TEST_F(ParserDeviceTest, DeviceConfigurableZeroGoesStraightToVerification) {
  Document document;
  document.Set("specVersion/major", "1").Set("specVersion/minor", "1");
  document.Set("Device/Configurable", "0");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(ParserDeviceTest, DeviceConfigurableZeroSkipsRadiosAndSafetyVyr) {
  for (const char* markup :
       {"<Configurable>0</Configurable>", "<Configurable/>", "<configurable>abc</CONFIGURABLE>"}) {
    Document document = Configurable();
    document.SetMarkup("Device/Configurable", markup);
    document.Set("Device/Wireless5/Channel", "44").Set("Device/SafetyVyr/UrlDetectEnbl", "7");
    document.Remove("Device/Wireless2.4/WlEnbl");
    EXPECT_EQ(Parse(document), 1) << markup << rssXmlData.setMsg;
    EXPECT_TRUE(Host().Writes().empty());
  }
}

TEST_F(ParserDeviceTest, ConfigurableIsReadAgainFromTheDeviceEachTime) {
  Document document = Configurable();
  EXPECT_EQ(Parse(document.Set("Device/Configurable", "0")), 1);
  Document changed = SampleDocument();
  EXPECT_EQ(Parse(changed.Set("Device/DeviceName", "Hall")), 1);
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Hall");
}

// The search does not see nesting: the first element of the name counts for the device.
TEST_F(ParserDeviceTest, NestedConfigurableCountsForTheDevice) {
  Document document = SampleDocument();
  document.SetFirst(Uplink("Configurable"), "0").Set("Device/DeviceName", "Hall");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(ParserDeviceTest, UplinkConfigurableZeroLeavesTheUplinkAlone) {
  Document document = Configurable();
  document.Remove("Device/UpLinkConnection").Set(Uplink("Configurable"), "0");
  document.Set("Device/DeviceName", "Hall").Set("Device/Wireless5/Channel", "44");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_TRUE(ChangesBelow("/uplink").empty());
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Hall");
  EXPECT_EQ(Host().Text("/lan/wireless5:1/channel"), "44");
}

TEST_F(ParserDeviceTest, ConfigurableOneReadsOn) {
  Document document = Configurable();
  document.SetFirst(Uplink("Configurable"), "1");
  document.SetFirst("Device/Wireless2.4/Configurable", "1");
  document.Set("Device/DeviceName", "Hall");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Hall");
}

TEST_F(ParserDeviceTest, UplinkThatTheDeviceFixesNeedsNoBlock) {
  Host().Set("/uplink/configurable", 0);
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Set(Uplink("ConnType"), "Static")), 1);
  EXPECT_EQ(Parse(document.Remove("Device/UpLinkConnection")), 1);
  EXPECT_TRUE(ChangesBelow("/uplink").empty());
}

TEST_F(ParserDeviceTest, EasyRoamingIsReadOnlyWithTheFeature) {
  Host().Set("/zentrolinks/easyroaming", 0);
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Set("Device/EasyRoaming", "roam-2")), 1);
  EXPECT_EQ(Parse(document.Remove("Device/EasyRoaming")), 1);
  EXPECT_EQ(Host().Text("/zentrolinks/easyroaminginfo"), "roam-1");
}

TEST_F(ParserDeviceTest, SafetyVyrIsReadOnlyWithTheFeature) {
  Host().Set("/zentrolinks/safetyvyr", 0);
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Set("Device/SafetyVyr/UrlDetectEnbl", "9")), 1);
  EXPECT_EQ(Parse(document.Remove("Device/SafetyVyr")), 1);
  EXPECT_TRUE(ChangesBelow("/safetyvyr").empty());
}

}  // namespace
}  // namespace kio::test
