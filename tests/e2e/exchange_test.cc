// Settings exchanges over HTTP: what is accepted, what is refused, and what becomes of the store.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "documents.h"
#include "host_clock.h"
#include "host_process.h"
#include "http_client.h"
#include "store.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(ExchangeTest, AnAcceptedDocumentIsAppliedAnsweredAndCommitted) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  std::string document = With(FactoryDocument(), "DeviceName", "Attic router");
  document = With(document, "UpLinkConnection", StaticUplink("192.0.2.77"));
  document = WithIn(document, "Wireless2.4", "WirelessName", "Attic");
  document = WithIn(document, "Wireless2.4", "Channel", "6");
  document = WithIn(document, "Wireless2.4", "AccessControl", AccessRules(3));

  const HttpResponse answer = Post(host.port(), "/settings", document);
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.Header("Content-Type"), "application/xml");
  EXPECT_EQ(answer.body, ResultDocument(0, "", 35));

  EXPECT_EQ(host.Node("/sys/friendlyname"), "Attic router");
  EXPECT_EQ(host.Node("/sys/factorydefault"), "0");
  EXPECT_EQ(host.Node("/uplink/conntype"), "Static");
  EXPECT_EQ(host.Node("/uplink/ip"), "192.0.2.77");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/wirelessname"), "Attic");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/channel"), "6");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/accesscontrol/acrule#"), "3");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/accesscontrol/acrule:3/mac"), "02:00:5E:BB:00:03");

  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_THAT(host.Output(), HasSubstr("action WanResync"));
  EXPECT_THAT(host.Output(), HasSubstr("action WlanResync"));
  EXPECT_THAT(host.Output(), HasSubstr("action DeviceResync"));
  EXPECT_THAT(host.Output(), Not(HasSubstr("action Wlan5gResync")));
  EXPECT_EQ(ReadFile(host.dir().File("uplink.state")),
            "hardware=Ethernet\nconntype=Static\nip=192.0.2.77\nnetmask=255.255.255.0\n"
            "gateway=192.0.2.1\ndns=192.0.2.1\n");
  EXPECT_EQ(ReadFile(host.dir().File("device.state")),
            "name=Attic router\nrouter=1\nroaming=off\n");
  EXPECT_THAT(ReadFile(host.dir().File("events.log")), HasSubstr(" uplink: Ethernet, Static\n"));
}

TEST(ExchangeTest, FewerRulesRemoveTheOthers) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string many = WithIn(FactoryDocument(), "Wireless5", "AccessControl", AccessRules(12));
  EXPECT_EQ(Post(host.port(), "/settings", many).body, ResultDocument(0, "", 10));
  EXPECT_EQ(host.Node("/lan/wireless5:1/accesscontrol/acrule#"), "12");
  const std::string one = WithIn(FactoryDocument(), "Wireless5", "AccessControl", AccessRules(1));
  EXPECT_EQ(Post(host.port(), "/settings", one).body, ResultDocument(0, "", 10));
  EXPECT_EQ(host.Node("/lan/wireless5:1/accesscontrol/acrule#"), "1");
  EXPECT_EQ(host.Node("/lan/wireless5:1/accesscontrol/acrule:1/mac"), "02:00:5E:BB:00:01");
}

TEST(ExchangeTest, ADocumentThatChangesNothingLeavesTheStoreAndRunsNoAction) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string before = host.Dump();
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).body, ResultDocument(0, "", 0));
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(host.Dump(), before);
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
}

TEST(ExchangeTest, SettingsSurviveARestart) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", With(FactoryDocument(), "DeviceName", "Kept")).status,
            200);
  EXPECT_EQ(host.End(SIGTERM), 0);
  ASSERT_TRUE(host.Start());
  EXPECT_THAT(Get(host.port(), "/device").body, HasSubstr("\"name\": \"Kept\""));
}

struct Refusal {
  const char* what;
  std::vector<std::string> profile;  // lines that replace those of the factory settings
  std::string document;
  int code;
  const char* message;
};

class RefusalTest : public ::testing::TestWithParam<Refusal> {};

TEST_P(RefusalTest, AnswersTheCodeAndLeavesTheStoreAsItWas) {
  const Refusal& refusal = GetParam();
  HostProcess host;
  host.UseProfile(ProfileWith(refusal.profile));
  ASSERT_TRUE(host.Start());
  const std::string before = host.Dump();
  const HttpResponse answer = Post(host.port(), "/settings", refusal.document);
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, ResultDocument(refusal.code, refusal.message, 0));
  EXPECT_EQ(Get(host.port(), "/result").body, answer.body);
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(host.Dump(), before);
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
}

// A document whose device name differs, so that a part of the store is written before a later
// element is refused.
std::string Renamed() { return With(FactoryDocument(), "DeviceName", "Never applied"); }

const char kNameIsNumber[] = "/sys/friendlyname_validate = 1,14,1";

INSTANTIATE_TEST_SUITE_P(
    Codes, RefusalTest,
    ::testing::Values(
        Refusal{"VersionMismatch", {}, With(Renamed(), "minor", "0"), 1, ""},
        Refusal{"MissingElement",
                {},
                Without(With(Renamed(), "UpLinkConnection", StaticUplink("192.0.2.9")), "DNS"),
                2,
                "Device/UpLinkConnection/DNS"},
        Refusal{"MissingBlock", {}, Without(Renamed(), "SafetyVyr"), 2, "SafetyVyr"},
        Refusal{"LongestMessage",
                {},
                With(Renamed(), "UpLinkConnection",
                     "<HardwareType>WWan802.11</HardwareType><ConnType>DHCP</ConnType>"
                     "<ExtenderSite><Survey>0</Survey></ExtenderSite>"),
                2,
                "Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID"},
        Refusal{"InvalidValue",
                {},
                WithIn(Renamed(), "Wireless2.4", "Channel", "99"),
                3,
                "Device/Wireless2.4/Channel"},
        Refusal{"RefusedWhileApplying", {"/sys/routerenbl = 2"}, Renamed(), 3, "Device/RouterEnbl"},
        Refusal{"RefusedInTheLastRadio",
                {"/lan/wireless5:1/wlschedule = 2"},
                WithIn(Renamed(), "Wireless2.4", "AccessControl", AccessRules(5)),
                3,
                "Device/Wireless5/WlSchedule"},
        Refusal{"BadLength",
                {},
                With(FactoryDocument(), "DeviceName", std::string(33, 'x')),
                10,
                "Device/DeviceName"},
        Refusal{"BadCharacter",
                {},
                With(Renamed(), "DevicePwd", "with a blank"),
                11,
                "Device/DevicePwd"},
        Refusal{"AboveMaximum",
                {kNameIsNumber},
                With(FactoryDocument(), "DeviceName", "15"),
                20,
                "Device/DeviceName"},
        Refusal{"BelowMinimum",
                {kNameIsNumber},
                With(FactoryDocument(), "DeviceName", "0"),
                21,
                "Device/DeviceName"}),
    [](const ::testing::TestParamInfo<Refusal>& test) { return test.param.what; });

TEST(ExchangeTest, ADocumentWithoutRootChangesNothing) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string before = host.Dump();
  const std::string refused = With(FactoryDocument(), "minor", "0");
  const std::string last = Post(host.port(), "/settings", refused).body;
  const std::string document = FactoryDocument();
  for (const std::string& text :
       {std::string("hello"), std::string("<device></device>"), std::string("%s%s%n"),
        document.substr(0, document.find("</root>"))}) {
    const HttpResponse answer = Post(host.port(), "/settings", text);
    EXPECT_EQ(answer.status, 400) << text;
    EXPECT_EQ(answer.body, "the settings document has no root element\n");
  }
  EXPECT_EQ(Get(host.port(), "/result").body, last);
  EXPECT_EQ(host.Dump(), before);
}

TEST(ExchangeTest, ADocumentCutAnywhereInsideIsRefused) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string before = host.Dump();
  const std::string document = FactoryDocument();
  const size_t device_end = document.find("</Device>");
  constexpr size_t kStep = 97;
  for (size_t cut = document.find("<specVersion>"); cut < device_end; cut += kStep) {
    const HttpResponse answer = Post(host.port(), "/settings", document.substr(0, cut) + "</root>");
    EXPECT_EQ(answer.status, 200) << cut;
    EXPECT_THAT(answer.body, HasSubstr("<RssSetResult>2</RssSetResult>")) << cut;
  }
  EXPECT_EQ(host.Dump(), before);
}

TEST(ExchangeTest, ARootWithoutContentIsRefused) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  for (const char* document : {"<root></root>", "<root/>", "<ROOT>x</ROOT>"}) {
    EXPECT_EQ(Post(host.port(), "/settings", document).body, ResultDocument(2, "specVersion", 0))
        << document;
  }
}

TEST(ExchangeTest, ADeviceOfVersion10TakesTheOlderDialect) {
  HostProcess host;
  host.UseProfile(ProfileWith({"/zentrolinks/specversion/minor = 0"}));
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).body, ResultDocument(1, "", 0));
  const std::string radio_rest = "<WlEnbl>1</WlEnbl><WlSchedule>0</WlSchedule>";
  const std::string document =
      "<root><specVersion><major>1</major><minor>0</minor></specVersion><Device>"
      "<DeviceName>Old router</DeviceName><DevicePwd>change-me-soon</DevicePwd>"
      "<RouterEnbl>1</RouterEnbl><UpLinkConnection><HardwareType>DSL</HardwareType>"
      "<ConnType>DHCP</ConnType><MTU>1492</MTU><DSL><VPI>8</VPI><VCI>48</VCI>"
      "<EncapsulationMode>VcMux</EncapsulationMode></DSL></UpLinkConnection>"
      "<ExtenderEnbl>0</ExtenderEnbl><Wireless2.4>" +
      radio_rest +
      "<WirelessName>Old</WirelessName><EncryptionMode>WPA2</EncryptionMode>"
      "<EncryptionKey>correct-horse-24</EncryptionKey></Wireless2.4><Wireless5>" +
      radio_rest +
      "<WirelessName>HomeNet-5G</WirelessName><EncryptionMode>WPA2</EncryptionMode>"
      "<EncryptionKey>correct-horse-50</EncryptionKey></Wireless5><SafetyVyr>"
      "<SafetyVyrEnbl>1</SafetyVyrEnbl><UrlDetectEnbl>1</UrlDetectEnbl>"
      "<SafetyNotifyEnbl>0</SafetyNotifyEnbl><ToolRecommendEnbl>0</ToolRecommendEnbl>"
      "</SafetyVyr></Device></root>";
  EXPECT_EQ(Post(host.port(), "/settings", document).body, ResultDocument(0, "", 45));
  EXPECT_EQ(host.Node("/uplink/dsl/vci"), "48");
  EXPECT_EQ(host.Node("/uplink/dsl/encapsulationmode"), "VcMux");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/encryptiontype"), "AUTO");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/wirelessname"), "Old");
}

TEST(ExchangeTest, CloningTakesTheRadiosAndLeavesTheDevice) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  std::string document = With(FactoryDocument(), "DeviceName", "Other router");
  document = With(document, "DevicePwd", "other-password");
  document = WithIn(document, "Wireless5", "WirelessName", "Cloned");
  // A channel that the radio does not have becomes the automatic one.
  document = WithIn(document, "Wireless5", "Channel", "165");
  EXPECT_EQ(Post(host.port(), "/settings?cloning=1", document).body, ResultDocument(0, "", 10));
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Home router");
  EXPECT_EQ(host.Node("/sys/user:1/password"), "change-me-soon");
  EXPECT_EQ(host.Node("/lan/wireless5:1/wirelessname"), "Cloned");
  EXPECT_EQ(host.Node("/lan/wireless5:1/channel"), "0");
  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_THAT(host.Output(), HasSubstr("action Wlan5gResync"));
  EXPECT_THAT(host.Output(), Not(HasSubstr("action DeviceResync")));
}

TEST(ExchangeTest, FullCloningResyncsTheDeviceInAnyCase) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings?cloning=1&full=1", FactoryDocument()).body,
            ResultDocument(0, "", 0));
  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_THAT(host.Output(), HasSubstr("action DeviceResync"));
  EXPECT_EQ(ReadFile(host.dir().File("device.state")), "name=Home router\nrouter=1\nroaming=off\n");
}

TEST(ExchangeTest, AStoreThatAnotherWritesIsAFailureThatChangesNothing) {
  HostProcess host;
  HostClock clock(&host);
  ASSERT_TRUE(clock.Start());
  const std::string before = host.Dump();
  kiohost::Store other;
  ASSERT_TRUE(other.Open(host.dir().File("store.db"), kiohost::Store::Mode::kExisting).ok());
  ASSERT_TRUE(other.Begin().ok());
  const std::chrono::milliseconds begin = clock.Time();
  const HttpResponse answer = Post(host.port(), "/settings", Renamed());
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, HasSubstr("database is locked"));
  ASSERT_TRUE(clock.Settle());
  EXPECT_EQ(clock.Time() - begin, std::chrono::seconds(5)) << "it waits, but once";
  other.Rollback();
  EXPECT_EQ(host.Dump(), before);
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
  EXPECT_EQ(Post(host.port(), "/settings", Renamed()).status, 200);
}

TEST(ExchangeTest, ALostTemporaryDirectoryIsAFailureThatChangesNothing) {
  HostProcess host;
  const std::string results = host.dir().File("r");
  host.dir().MakeDirectory("r");
  ASSERT_TRUE(host.Start({"--temp-dir", results, "--state-dir", host.dir().path()}));
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).status, 200);
  EXPECT_EQ(Get(host.port(), "/result").status, 200);
  const std::string before = host.Dump();
  std::filesystem::remove_all(results);
  const HttpResponse answer = Post(host.port(), "/settings", Renamed());
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, HasSubstr("rssset_result.xml"));
  EXPECT_EQ(host.Dump(), before);
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
  const HttpResponse result = Get(host.port(), "/result");
  EXPECT_EQ(result.status, 404);
  EXPECT_EQ(result.body, "there is no result document\n");
}

}  // namespace
