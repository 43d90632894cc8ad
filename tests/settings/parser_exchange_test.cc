// Whole exchanges: from the text of a document to the store, the result document and the flags.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ExchangeTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }
};

TEST_F(ExchangeTest, UnchangedSettingsAreAcceptedAndWriteOnlyTheAccessModes) {
  EXPECT_EQ(Parse(SampleDocument()), 1);
  EXPECT_EQ(Changes(), kAlways);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
  EXPECT_EQ(rssXmlData.setResult, 0);
  EXPECT_EQ(rssXmlData.exeflag, 0);
}

TEST_F(ExchangeTest, SecondIdenticalExchangeWritesOnlyTheAccessModes) {
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "Hall").Set("Device/Wireless5/Channel", "44");
  UseStatic(document);
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(rssXmlData.exeflag, 1 + 8 + 16 + 32);
  Host().ClearCalls();
  Host().ClearCommands();
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Changes(), kAlways);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
}

TEST_F(ExchangeTest, ChangesAreAppliedAndTheWaitingTimeIsTold) {
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "Fish &amp; Chips");
  document.Set("Device/Wireless2.4/WirelessName", "&lt;Home&gt;");
  UseStatic(document);
  document.Set("Device/UpLinkConnection/IP", "10.0.0.77");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 35));
  EXPECT_EQ(rssXmlData.exeflag, 1 + 4 + 16 + 32);
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Fish & Chips");
  EXPECT_EQ(Host().Text("/lan/wireless2.4:1/wirelessname"), "<Home>");
  EXPECT_EQ(Host().Text("/uplink/ip"), "10.0.0.77");
  EXPECT_EQ(Host().Text("/uplink/conntype"), "Static");
  EXPECT_EQ(Host().Text("/sys/factorydefault"), "0");
}

TEST_F(ExchangeTest, NoRootWritesNoResult) {
  rssXmlData.setResult = 42;
  for (const char* text : {"", "hello", "<root>", "<root>\n<Device>", "</root>", "<roots></roots>",
                           "<root x=\"1\"></root>"}) {
    EXPECT_EQ(Parse(text), 0) << text;
  }
  EXPECT_TRUE(Host().commands().empty());
  EXPECT_TRUE(Host().Writes().empty());
  EXPECT_EQ(rssXmlData.setResult, 42);
}

TEST_F(ExchangeTest, RootIsFoundAnywhereInAnyCase) {
  std::string text = "POST junk <a><RoOt>" + SampleDocument().Body() + "</rOOT>";
  EXPECT_EQ(Parse(text), 1);
}

TEST_F(ExchangeTest, EverythingBehindTheRootIsIgnored) {
  Document version;
  version.Set("specVersion/major", "1").Set("specVersion/minor", "1");
  EXPECT_EQ(Parse(version.Text() + SampleDocument().Body()), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(2, "Device", 0));
  EXPECT_EQ(Parse(SampleDocument().Text() + "<Device></Device><root>"), 1);
}

TEST_F(ExchangeTest, EmptyRootsHaveNoVersion) {
  for (const char* text : {"<root></root>", "<root/>", "<root />"}) {
    for (const std::string& rest : {std::string(), SampleDocument().Body()}) {
      Host().ClearCommands();
      EXPECT_EQ(Parse(text + rest), 0);
      EXPECT_EQ(Host().commands(), ResultCommands(2, "specVersion", 0)) << text;
    }
  }
}

TEST_F(ExchangeTest, OtherVersionIsRefused) {
  log_file::Start(4);
  Document document = SampleDocument();
  document.Set("specVersion/minor", "0").Set("Device/DeviceName", "Hall");
  EXPECT_EQ(Parse(document), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(1, "", 0));
  EXPECT_TRUE(Host().Writes().empty());
  EXPECT_STREQ(rssXmlData.deviceName, "");
  EXPECT_STREQ(rssXmlData.specName, "specVersion");
  EXPECT_EQ(rssXmlData.specVer, 101);
  EXPECT_THAT(log_file::Lines(), ::testing::ElementsAre("Wrong Spec Version! Device=1.1, XML=1.0"));
}

TEST_F(ExchangeTest, VersionIsReadBeforeItIsCompared) {
  Document document = SampleDocument();
  document.Set("specVersion/major", "abc").Set("specVersion/minor", " 2x");
  log_file::Start(4);
  EXPECT_EQ(Parse(document), 0);
  EXPECT_THAT(log_file::Contents(), HasSubstr("Wrong Spec Version! Device=1.1, XML=0.2\n"));
}

// Versions are compared by 100 x major + minor.
TEST_F(ExchangeTest, VersionsCompareByTheirCombinedValue) {
  Document document = SampleDocument();
  document.Set("specVersion/major", "0").Set("specVersion/minor", "101");
  EXPECT_EQ(Parse(document), 1);
}

TEST_F(ExchangeTest, DeviceVersionComesFromTheStore) {
  Host().Set("/zentrolinks/specversion/major", 3);
  Host().Set("/zentrolinks/specversion/minor", 4);
  Document document = SampleDocument();
  document.Set("specVersion/major", "3").Set("specVersion/minor", "4");
  EXPECT_EQ(Parse(document), 1);
}

TEST_F(ExchangeTest, VerificationFaultIsAnsweredAndNothingIsWritten) {
  Document document = SampleDocument();
  document.Set("Device/DeviceName", std::string(33, 'n'));
  EXPECT_EQ(Parse(document), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(10, "Device/DeviceName", 0));
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(ExchangeTest, EveryResultCodeIsAnswered) {
  struct Row {
    const char* path;
    const char* value;
    int code;
  };
  Host().Set("/sys/friendlyname_validate", "1,14,1");
  constexpr Row kRows[] = {{"Device/DeviceName", "15", 20},
                           {"Device/DeviceName", "0", 21},
                           {"Device/DevicePwd", "abc", 10},
                           {"Device/DevicePwd",
                            "ab\x01"
                            "cd",
                            11},
                           {"Device/SafetyVyr/UrlDetectEnbl", "2", 3},
                           {"Device/Wireless5/WlEnbl", "4", 3},
                           {"Device/Wireless2.4/AccessControl/WlAcMode", "2", 3},
                           {"Device/Wireless2.4/AccessControl/AcRule/MAC", "", 3}};
  for (const Row& row : kRows) {
    Document document = SampleDocument();
    document.Set("Device/DeviceName", "7").Set(row.path, row.value);
    Host().ClearCommands();
    EXPECT_EQ(Parse(document), 0);
    EXPECT_EQ(Host().commands(), ResultCommands(row.code, row.path, 0)) << row.value;
  }
}

TEST_F(ExchangeTest, RefusalWhileApplyingIsTheOnlyAnswer) {
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "Hall").Set("Device/RouterEnbl", "2");
  rssXmlData.exeflag = 4;
  EXPECT_EQ(Parse(document), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/RouterEnbl", 0));
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Hall");
  EXPECT_EQ(rssXmlData.exeflag, 4) << "a failed exchange leaves the mask as it was";
}

TEST_F(ExchangeTest, FailuresLeaveTheMasksAlone) {
  EXPECT_EQ(Parse("<root></root>"), 0);
  rssXmlData.exeflag = 33;
  rssXmlData.pre_exeflag = 8;
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Remove("Device/DevicePwd")), 0);
  EXPECT_EQ(rssXmlData.exeflag, 33);
  EXPECT_EQ(rssXmlData.pre_exeflag, 8);
}

TEST_F(ExchangeTest, FieldsFilledBeforeAFailureKeepTheirValues) {
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "Hall").Remove("Device/DevicePwd");
  EXPECT_EQ(Parse(document), 0);
  EXPECT_STREQ(rssXmlData.deviceName, "Hall");
}

TEST_F(ExchangeTest, InstallsTheLostKeyWriterForGood) {
  EXPECT_EQ(Parse(""), 0);
  EXPECT_EQ(XmlErrMsg_LostKey, &write_RssXml_LostKeyError);
}

TEST_F(ExchangeTest, DeviceThatIsNotConfigurableNeedsNoDeviceBlock) {
  Host().Set("/zentrolinks/configurable", 0);
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "Hall");
  EXPECT_EQ(Parse(document), 1);
  document.Remove("Device");
  Host().ClearCommands();
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(ExchangeTest, SurveyRequest) {
  Document document = SampleDocument();
  UseHardware(document, "WWan802.11");
  document.Set("Device/UpLinkConnection/ExtenderSite/Survey", "1");
  document.Set("Device/DeviceName", "Hall");
  document.Remove("Device/UpLinkConnection/ExtenderSite/WirelessName");
  EXPECT_EQ(Parse(document), 1);
  EXPECT_EQ(Changes(), (Texts{"/uplink/extendersite/survey=1"}));
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 3));
  EXPECT_EQ(rssXmlData.exeflag, 64);
}

TEST_F(ExchangeTest, ResultGoesToTheDirectoryOfTheStore) {
  Host().Set("/zentrolinks/tempdirecory", "/elsewhere");
  EXPECT_EQ(Parse(SampleDocument()), 1);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0, "/elsewhere"));
}

TEST_F(ExchangeTest, WrittenByTheRealShell) {
  const TemporaryDirectory directory;
  Host().Set("/zentrolinks/tempdirecory", directory.path());
  Host().run_commands = true;
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Set("Device/DeviceName", "Hall")), 1);
  EXPECT_EQ(ReadFile(directory.File("rssset_result.xml")), ResultDocument(0, "", 5));
  EXPECT_EQ(Parse(document.Remove("Device/RouterEnbl")), 0);
  EXPECT_EQ(ReadFile(directory.File("rssset_result.xml")),
            ResultDocument(2, "Device/RouterEnbl", 0));
  EXPECT_EQ(Parse("nothing"), 0);
  EXPECT_EQ(ReadFile(directory.File("rssset_result.xml")),
            ResultDocument(2, "Device/RouterEnbl", 0))
      << "an earlier document stays";
}

TEST_F(ExchangeTest, LogsTheDocumentAndTheResult) {
  log_file::Start(7);
  const std::string text = SampleDocument().Text();
  Parse(text);
  const std::string log = log_file::Contents();
  EXPECT_THAT(log, HasSubstr("---- Received Rss XML Data Begin ----\n" + text +
                             "\n---- Received Rss XML Data End ----\n"));
  EXPECT_THAT(log, HasSubstr("done, ret=1\n"));
  for (const char* name : {"do_RssXml_Parser_", "do_RssRoot_Parser", "do_RssDevice_Parser",
                           "do_RssUpLink_Parser", "do_RssWireless_Parser", "do_RssAccessCtl_Parser",
                           "do_RssAcRule_Parser", "do_RssSafetyVyr_Parser"}) {
    EXPECT_THAT(log, HasSubstr(name));
  }
  EXPECT_THAT(log, HasSubstr("Rss RouterEnbl=1\n"));
  EXPECT_THAT(log, HasSubstr("Rss EncryptionMode='WPA2' -> 4\n"));
  EXPECT_THAT(log, HasSubstr("Rss EncryptionType='AES' -> 4\n"));
}

TEST_F(ExchangeTest, LogsFailuresToTheEnd) {
  for (const char* text : {"nothing", "<root></root>"}) {
    log_file::Start(7);
    Parse(text);
    EXPECT_THAT(log_file::Contents(), HasSubstr("done, ret=0\n"));
    EXPECT_THAT(log_file::Contents(), Not(HasSubstr("done, ret=1\n")));
  }
}

TEST_F(ExchangeTest, DocumentsAreNeverFormats) {
  log_file::Start(7);
  Host().Set("/sys/friendlyname_validate", "2");
  Document document = SampleDocument();
  document.Set("Device/DeviceName", "%s%n%d%*s").Set("Device/Wireless5/Channel", "%n");
  EXPECT_EQ(Parse(document), 0);
  EXPECT_STREQ(rssXmlData.deviceName, "%s%n%d%*s");
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Wireless5/Channel", 0));
  EXPECT_THAT(log_file::Contents(), HasSubstr("<DeviceName>%s%n%d%*s</DeviceName>"));
}

}  // namespace
}  // namespace kio::test
