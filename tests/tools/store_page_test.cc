// The page of the store names each node that the library touches, and no other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "catalogue.h"
#include "fields/row.h"
#include "kioapp/kioapp.h"
#include "platform/sandbox.h"
#include "store_nodes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::tools {
namespace {

using test::Document;
using test::FakeHost;
using test::Parse;
using test::Sandbox;
using test::StoreCall;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kUplink = "Device/UpLinkConnection/";

// A path as the page has it.
std::string Generic(const std::string& path) {
  std::string generic;
  for (std::size_t i = 0; i < path.size(); ++i) {
    const char previous = i == 0 ? '\0' : path[i - 1];
    const bool is_digit = std::isdigit(static_cast<unsigned char>(path[i])) != 0;
    if (previous != ':' || !is_digit) {
      generic += static_cast<char>(std::tolower(static_cast<unsigned char>(path[i])));
      continue;
    }
    while (i + 1 < path.size() && std::isdigit(static_cast<unsigned char>(path[i + 1])) != 0) {
      ++i;
    }
    generic += "{n}";
  }
  for (const std::string radio : {"wireless2.4:{n}", "wireless5:{n}"}) {
    const std::size_t at = generic.find(radio);
    if (at != std::string::npos) {
      generic.replace(at, radio.size(), "wireless{band}:1");
    }
  }
  const std::size_t user = generic.find("/user:{n}/");
  return user == std::string::npos ? generic : generic.replace(user, 10, "/user:1/");
}

// What the library did to the store in everything that it can do.
class StorePageTest : public test::SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Sandbox::Get().Reset();
    Host().Set("/zentrolinks/tempdirecory", directory_.path());
    // The steps of an upgrade and the number of listed stations outlive a test.
    do_FwUpgradeAction(KIOAPP_FW_INIT);
    exe_ExternalCall(KIOAPP_SYNC_UPDATE_STA_RSSI);
    Host().ClearCalls();
  }
  void TearDown() override {
    Host().on_command = nullptr;
    Sandbox::Get().Reset();
    Host().Reset();
  }

  // A device that holds nothing of what documents hold but what it is known by: whatever is applied
  // differs. Access control holds a rule too many.
  void PutDevice(void (*store)()) {
    Collect();
    Host().Reset();
    test::ClearRecord();
    store();
    Host().Set("/zentrolinks/tempdirecory", directory_.path());
    for (const StoreNode& node : nodes_) {
      const bool is_rule = node.path.find("acrule") != std::string::npos;
      const std::string name = node.path.substr(node.path.rfind('/') + 1);
      if (!node.elements.empty() && !is_rule && name != "major" && name != "minor" &&
          name != "wlenbl" && name != "wlacenbl") {
        for (const char* band : {"2.4", "5"}) {
          std::string path = node.path;
          const std::size_t at = path.find("{band}");
          Host().Delete(at == std::string::npos ? path : path.replace(at, 6, band));
        }
      }
    }
    for (const char* radio : {"/lan/wireless2.4:1", "/lan/wireless5:1"}) {
      Host().Set(std::string(radio) + "/wlenbl", 0);
      Host().Set(std::string(radio) + "/accesscontrol/wlacenbl", 0);
      Host().Delete(std::string(radio) + "/accesscontrol/acrule:1");
      Host().Set(std::string(radio) + "/accesscontrol/acrule:9/mac", "old");
      Host().Set(std::string(radio) + "/configurable/acrule#", 1);
    }
  }

  void Exchange(Document document) {
    for (const char* element :
         {"SafetyVyrEnbl", "UrlDetectEnbl", "SafetyNotifyEnbl", "ToolRecommendEnbl"}) {
      document.Set(std::string("Device/SafetyVyr/") + element, "1");
    }
    // What a document need not hold.
    for (const test::FieldRow& row : test::AllRows()) {
      for (const test::InDocuments& held : row.documents) {
        if (held.without == test::Without::kKept) {
          document.Set(held.element, held.value);
        }
      }
    }
    ASSERT_EQ(Parse(document), 1) << rssXmlData.setMsg;
    do_RssXml_Commit();
  }

  void RunExchanges() {
    for (const char* hardware : {"Ethernet", "ADSL", "VDSL", "WWan802.11", "WWanAPN", "DSL"}) {
      for (void (*connect)(Document&) : {test::UseStatic, test::UsePppoe}) {
        Document document = test::SampleDocument();
        test::UseHardware(document, hardware);
        connect(document);
        PutDevice(test::StoreSampleDevice);
        Exchange(document);
      }
    }
    // Version 1.0 verifies the other types' providers without reading them.
    for (const char* hardware : {"Ethernet", "WWan802.11", "DSL"}) {
      Document document = test::Version10Document();
      test::UseHardware(document, hardware);
      PutDevice(test::StoreVersion10Device);
      Exchange(document);
    }
  }

  void RunSurveyAndCloning() {
    PutDevice(test::StoreSampleDevice);
    Host().Set("/uplink/hardwaretype", "WWan802.11");
    ASSERT_EQ(test::ParseCloning(test::SampleDocument()), 1) << rssXmlData.setMsg;
    Document document = test::SampleDocument();
    test::UseHardware(document, "WWan802.11");
    document.Set(std::string(kUplink) + "ExtenderSite/Survey", "1");
    ASSERT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  }

  void RunVariables() {
    PutDevice(test::StoreSampleDevice);
    Host().Set("/wirelesssitesurvey/site#", 1);
    Host().Set("/fwupgradeinfo/fwupgradeurl", "http://$lanip:$rssport/");
    init_RssVar();
    for (const CatalogueEntry& entry : ListVariables()) {
      std::string name = entry.name;
      const std::size_t index = name.find('?');
      getRssVar(index == std::string::npos ? name.c_str() : name.replace(index, 2, "00").c_str());
    }
  }

  void RunFirmware() {
    Host().Set("/fwupgradeinfo/currfwfilename", "AB12_FW1.0.2.bin");
    const std::string list = directory_.File("AB12.xml");
    Host().on_command = [&list](const std::string& command) {
      if (command.find(".xml") != std::string::npos && command.compare(0, 4, "wget") == 0) {
        std::ofstream(list) << "<root><specVersion><major>1</major><minor>0</minor></specVersion>"
                               "<FirmwareList><Firmware><MacList><MAC>*</MAC></MacList>"
                               "<FwURL>/AB12_FW1.0.8.bin</FwURL><NotesURL>/n</NotesURL>"
                               "</Firmware></FirmwareList></root>";
      }
    };
    for (const int action :
         {KIOAPP_FW_INIT, KIOAPP_FW_SEARCH, KIOAPP_FW_DOWNLOAD, KIOAPP_FW_INIT}) {
      do_FwUpgradeAction(action);
    }
    Host().on_command = nullptr;
  }

  void RunStations() {
    Sandbox::Get().interfaces["wl0"] = IFF_UP;
    Host().on_command = [](const std::string&) {
      Sandbox::Get().Create("/var/tmp_assoc", "assoclist 02:00:00:00:00:01 -40\n");
    };
    for (int i = 0; i < 2; ++i) {
      exe_ExternalCall(KIOAPP_SYNC_UPDATE_STA_RSSI | KIOAPP_SYNC_DEAUTH_STA);
    }
  }

  // Adds what was done since the last reset.
  void Collect() {
    for (const StoreCall& call : Host().calls()) {
      const bool is_read =
          call.kind == StoreCall::Kind::kGetText || call.kind == StoreCall::Kind::kGetInt;
      (is_read ? read_ : written_).insert(Generic(call.path));
    }
    Host().ClearCalls();
  }

  void RunAll() {
    RunExchanges();
    RunSurveyAndCloning();
    RunVariables();
    checkWlanChannelUsing();
    generate_BKey("192.0.2.1");
    RunFirmware();
    RunStations();
    Collect();
  }

  const std::vector<StoreNode> nodes_ = ListStoreNodes();
  test::TemporaryDirectory directory_;
  std::set<std::string> read_;
  std::set<std::string> written_;
};

TEST_F(StorePageTest, ListsWhatIsReadAndWrittenAndNothingElse) {
  RunAll();
  std::set<std::string> listed_reads;
  std::set<std::string> listed_writes;
  for (const StoreNode& node : nodes_) {
    if (!node.reads.empty()) {
      listed_reads.insert(node.path);
    }
    if (!node.writes.empty()) {
      listed_writes.insert(node.path);
    }
  }
  EXPECT_EQ(listed_reads, read_);
  EXPECT_EQ(listed_writes, written_);
}

TEST_F(StorePageTest, EachNodeIsDescribed) {
  std::set<std::string> paths;
  for (const StoreNode& node : nodes_) {
    EXPECT_TRUE(paths.insert(node.path).second) << node.path;
    EXPECT_THAT(node.meaning, Not(IsEmpty())) << node.path;
    EXPECT_THAT(node.value, Not(IsEmpty())) << node.path;
    EXPECT_THAT(node.absent, Not(IsEmpty())) << node.path;
  }
}

// What a variable shows when nothing is stored.
TEST_F(StorePageTest, AbsentNodesCountAsListed) {
  Host().Reset();
  init_RssVar();
  int compared = 0;
  for (const StoreNode& node : nodes_) {
    for (const std::string& variable : node.variables) {
      if (variable.find('?') != std::string::npos ||
          node.absent == "one printable character or more") {
        continue;
      }
      const std::string absent = node.absent == "empty" ? "" : node.absent;
      EXPECT_EQ(getRssVar(variable.c_str()), absent) << node.path;
      ++compared;
    }
  }
  EXPECT_GT(compared, 50);
}

// A good document is answered with 0, and this is all that comes of it.
TEST_F(StorePageTest, OnAnEmptyStoreNextToNothingIsApplied) {
  Host().Reset();
  EXPECT_EQ(Parse(test::SampleDocument()), 1);
  EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_APPLIED);
  EXPECT_THAT(test::Changes(),
              ElementsAre("/sys/friendlyname=Kitchen", "/sys/user:1/password=secret12",
                          "/sys/routerenbl=1", "/sys/factorydefault=0"));
}

// As many deletions as the count says, whatever there is.
TEST_F(StorePageTest, OneRuleIsDeletedForEachNumberOfTheCount) {
  test::StoreSampleDevice();
  Host().Set("/lan/wireless2.4:1/accesscontrol/acrule#", 500);
  ASSERT_EQ(Parse(test::SampleDocument()), 1);
  int deleted = 0;
  for (const StoreCall& call : Host().Writes()) {
    deleted += call.kind == StoreCall::Kind::kDelete ? 1 : 0;
  }
  EXPECT_EQ(deleted, 498);
}

}  // namespace
}  // namespace kio::tools
