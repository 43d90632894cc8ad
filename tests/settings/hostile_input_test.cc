// Documents that are cut, broken, nested, long or meant to harm. Under the address sanitizer any
// access outside their buffers ends these tests.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

// Parses `text` from a heap block of exactly its size.
int ParseExact(const std::string& text, bool cloning = false) {
  const auto block = std::make_unique<char[]>(text.size() + 1);
  std::memcpy(block.get(), text.c_str(), text.size() + 1);
  return cloning ? do_RssXml_Parser_for_ApCloning(block.get()) : do_RssXml_Parser(block.get());
}

Document FullDocument() {
  Document document = SampleDocument();
  UseHardware(document, "WWan802.11");
  UseStatic(document);
  return document;
}

class HostileInputTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  // Whatever came in: the record is sound and the mode of the device is what it was.
  static void ExpectSound(const std::string& what) {
    ASSERT_TRUE(UnterminatedMembers().empty()) << what;
    ASSERT_EQ(rssXmlData.specVer, rssXmlData.specMajor * 100 + rssXmlData.specMinor) << what;
    for (const RssWlan& radio : rssXmlData.wlan) {
      ASSERT_GE(radio.wlAcRuleNo, 0) << what;
      ASSERT_LE(radio.wlAcRuleNo, 40) << what;
    }
  }
};

TEST_F(HostileInputTest, EveryPrefixOfADocument) {
  const std::string text = FullDocument().Text();
  for (std::size_t size = 0; size < text.size(); ++size) {
    const int result = ParseExact(text.substr(0, size));
    ASSERT_EQ(result, size + 1 == text.size() ? 1 : 0) << size << rssXmlData.setMsg;
    ExpectSound(std::to_string(size));
    Host().ClearCalls();
    Host().ClearCommands();
  }
}

TEST_F(HostileInputTest, EveryPrefixOfADocumentOfVersion10) {
  StoreVersion10Device();
  Document document = Version10Document();
  UseHardware(document, "DSL");
  const std::string text = document.Text();
  for (std::size_t size = 0; size < text.size(); ++size) {
    ASSERT_EQ(ParseExact(text.substr(0, size)), size + 1 == text.size() ? 1 : 0) << size;
    Host().ClearCalls();
    Host().ClearCommands();
  }
}

// The rest of the root element is still there, so that what is cut lies inside the document.
TEST_F(HostileInputTest, EveryPrefixInsideAClosedRoot) {
  const std::string body = FullDocument().Body();
  for (std::size_t size = 0; size < body.size(); ++size) {
    ParseExact("<root>" + body.substr(0, size) + "</root>");
    ParseExact("<root>" + body.substr(0, size) + "</root>", true);
    ExpectSound(std::to_string(size));
    Host().ClearCalls();
    Host().ClearCommands();
  }
}

class HostileByteTest : public HostileInputTest, public ::testing::WithParamInterface<char> {};

TEST_P(HostileByteTest, InEveryPlace) {
  const std::string text = FullDocument().Text();
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::string broken = text;
    broken[at] = GetParam();
    ParseExact(broken);
    ExpectSound(std::to_string(at));
    Host().ClearCalls();
    Host().ClearCommands();
  }
}

INSTANTIATE_TEST_SUITE_P(Bytes, HostileByteTest,
                         ::testing::Values('\0', '<', '>', '/', '&', '\xFF', '%', '\''));

TEST_F(HostileInputTest, DeepNesting) {
  for (const std::string name : {"root", "Device", "AcRule", "Configurable", "x"}) {
    std::string text = "<root><specVersion><major>1</major><minor>1</minor></specVersion>";
    for (int i = 0; i < 5000; ++i) {
      text += "<" + name + ">";
    }
    EXPECT_EQ(ParseExact(text), 0);
    EXPECT_EQ(ParseExact(text + "</root>"), 0) << name;
    for (int i = 0; i < 5000; ++i) {
      text += "</" + name + ">";
    }
    EXPECT_EQ(ParseExact(text + "</root>"), 0) << name;
    ExpectSound(name);
  }
}

TEST_F(HostileInputTest, SixtyFourKibibytes) {
  constexpr std::size_t kSize = 65536;
  std::vector<std::string> fillers = {"<",      "a",         " ",    "<a",  "<root",
                                      "</root", "<Device/>", "&lt;", "\xFF"};
  for (const std::string& filler : fillers) {
    std::string junk;
    while (junk.size() < kSize) {
      junk += filler;
    }
    EXPECT_EQ(ParseExact(junk), 0);
    ParseExact("<root>" + junk + "</root>");
    ParseExact("<root>" + junk);
    Document document = FullDocument();
    ParseExact(document.Set("Device/DeviceName", junk).Text());
    ExpectSound(filler);
  }
}

TEST_F(HostileInputTest, LongTextInEveryElement) {
  const std::string junk(30000, 'j');
  for (const char* path : {"specVersion/major",
                           "specVersion/minor",
                           "Device/DeviceName",
                           "Device/DevicePwd",
                           "Device/RouterEnbl",
                           "Device/EasyRoaming",
                           "Device/UpLinkConnection/HardwareType",
                           "Device/UpLinkConnection/ConnType",
                           "Device/UpLinkConnection/IP",
                           "Device/UpLinkConnection/NetMask",
                           "Device/UpLinkConnection/Gateway",
                           "Device/UpLinkConnection/DNS",
                           "Device/UpLinkConnection/ExtenderSite/Survey",
                           "Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID",
                           "Device/UpLinkConnection/ExtenderSite/WirelessType",
                           "Device/UpLinkConnection/ExtenderSite/WirelessName",
                           "Device/UpLinkConnection/ExtenderSite/EncryptionKey",
                           "Device/Wireless2.4/WlEnbl",
                           "Device/Wireless2.4/WirelessBSSID",
                           "Device/Wireless2.4/WirelessName",
                           "Device/Wireless2.4/EncryptionMode",
                           "Device/Wireless2.4/EncryptionKey",
                           "Device/Wireless2.4/EncryptionType",
                           "Device/Wireless2.4/Channel",
                           "Device/Wireless2.4/AccessControl/WlAcEnbl",
                           "Device/Wireless2.4/AccessControl/AcRule/Active",
                           "Device/Wireless2.4/AccessControl/AcRule/MAC",
                           "Device/SafetyVyr/UrlDetectEnbl"}) {
    Document document = FullDocument();
    ParseExact(document.Set(path, junk).Text());
    ExpectSound(path);
    ParseExact(document.Set(path, std::string(30000, '&')).Text());
    ExpectSound(path);
  }
}

TEST_F(HostileInputTest, ExtremeNumbersInEveryInteger) {
  for (const char* number : {"2147483647", "-2147483648", "99999999999999999999", "-99999999999",
                             "4294967297", "21474837", "-21474837"}) {
    for (const char* path :
         {"specVersion/major", "specVersion/minor", "Device/RouterEnbl", "Device/Wireless5/WlEnbl",
          "Device/Wireless5/WlSchedule", "Device/Wireless5/Channel",
          "Device/Wireless5/AccessControl/WlAcEnbl", "Device/Wireless5/AccessControl/WlAcMode",
          "Device/Wireless5/AccessControl/AcRule/Active", "Device/SafetyVyr/SafetyVyrEnbl",
          "Device/UpLinkConnection/ExtenderSite/Survey"}) {
      StoreSampleDevice();
      Document document = FullDocument();
      ParseExact(document.Set(path, number).Text());
      ExpectSound(path);
    }
    Host().Set("/zentrolinks/specversion/major", number);
    Host().Set("/lan/wireless5:1/configurable/acrule#", number);
    restore_XmlRssStatus(1);
    ClearRecord();
    Host().Delete("/lan/wireless5:1/configurable/acrule#");
  }
}

TEST_F(HostileInputTest, ThousandsOfRules) {
  Document document = SampleDocument();
  for (int i = 0; i < 3000; ++i) {
    document.AddRule("Wireless2.4", "1", "m" + std::to_string(i));
  }
  EXPECT_EQ(ParseExact(document.Text()), 1);
  EXPECT_EQ(rssXmlData.wlan[0].wlAcRuleNo, 40);
  ExpectSound("rules");
}

TEST_F(HostileInputTest, ThousandsOfUnclosedOrEmptyRules) {
  for (const std::string rule : {"<AcRule>", "<AcRule/>", "<AcRule />", "<AcRule></AcRule>"}) {
    std::string rules;
    for (int i = 0; i < 3000; ++i) {
      rules += rule;
    }
    std::string text = SampleDocument().Text();
    text.insert(text.find("</AccessControl>"), rules);
    ParseExact(text);
    ExpectSound(rule);
  }
}

TEST_F(HostileInputTest, FormatsInEveryValue) {
  log_file::Start(7);
  std::string text = SampleDocument().Text();
  const std::string formats = "%n%s%d%x%*d";
  for (std::size_t at = text.find("</"); at != std::string::npos;
       at = text.find("</", at + formats.size() + 2)) {
    text.insert(at, formats);
  }
  ParseExact(text);
  ExpectSound("formats");
  std::string body = FullDocument().Text();
  for (std::size_t at = body.find("<DeviceName>"); at != std::string::npos;
       at = body.find("</", at + formats.size() + 2)) {
    at = body.find("</", at);
    body.insert(at, formats);
  }
  ParseExact(body);
  ExpectSound("formats");
  EXPECT_NE(log_file::Contents().find(formats), std::string::npos);
}

TEST_F(HostileInputTest, QuotesReachNoCommand) {
  Host().Set("/sys/friendlyname_validate", "2");
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "';touch X;'").Set("Device/Wireless5/Channel", "';touch X;'");
  EXPECT_EQ(ParseExact(document.Text()), 0);
  for (const std::string& command : Host().commands()) {
    EXPECT_EQ(command.find("touch"), std::string::npos);
  }
}

TEST_F(HostileInputTest, ElementsInTheWrongOrderOrTwice) {
  const std::string body = FullDocument().Body();
  EXPECT_EQ(ParseExact("<root>" + body + body + "</root>"), 1);
  EXPECT_EQ(ParseExact("<root><root>" + body + "</root></root>"), 1);
  ParseExact("</root></Device>" + body + "<root>" + body);
  ExpectSound("order");
}

}  // namespace
}  // namespace kio::test
