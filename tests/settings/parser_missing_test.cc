// Required elements that are missing, each in turn.
#include <ostream>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

// A document and the paths of its required elements, in the order in which they are read.
struct Sample {
  const char* name;
  Document document;
  bool is_version_10;
  std::vector<std::string> paths;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

// A missing block is told by its name alone, another element with the path of its block.
std::string Message(const std::string& path) {
  static const std::vector<std::string> kBlocks = {
      "specVersion",  "Device",    "UpLinkConnection", "DSL",           "APN",
      "ExtenderSite", "Wireless5", "Wireless2.4",      "AccessControl", "SafetyVyr"};
  std::string name = path.substr(path.rfind('/') + 1);
  for (const std::string& block : kBlocks) {
    if (name == block) {
      return name;
    }
  }
  return path;
}

using Paths = std::vector<std::string>;

Paths RadioPaths(const std::string& radio) {
  const std::string path = "Device/" + radio;
  return {path,
          path + "/WlEnbl",
          path + "/WlSchedule",
          path + "/WirelessBSSID",
          path + "/WirelessName",
          path + "/EncryptionMode",
          path + "/EncryptionKey",
          path + "/EncryptionType",
          path + "/Channel",
          path + "/AccessControl",
          path + "/AccessControl/WlAcEnbl",
          path + "/AccessControl/WlAcMode",
          path + "/AccessControl/AcRule/Active",
          path + "/AccessControl/AcRule/MAC"};
}

Paths RadioPaths10(const std::string& radio) {
  const std::string path = "Device/" + radio;
  return {path,
          path + "/WlEnbl",
          path + "/WlSchedule",
          path + "/WirelessName",
          path + "/EncryptionMode",
          path + "/EncryptionKey"};
}

Paths Under(const std::string& parent, const Paths& names) {
  Paths paths;
  for (const std::string& name : names) {
    paths.push_back(parent);
    paths.back().append("/").append(name);
  }
  return paths;
}

const Paths kHead = {"specVersion",
                     "specVersion/major",
                     "specVersion/minor",
                     "Device",
                     "Device/DeviceName",
                     "Device/DevicePwd",
                     "Device/RouterEnbl",
                     "Device/UpLinkConnection",
                     "Device/UpLinkConnection/HardwareType",
                     "Device/UpLinkConnection/ConnType"};
const Paths kSafety = Join({{"Device/SafetyVyr"},
                            Under("Device/SafetyVyr", {"SafetyVyrEnbl", "UrlDetectEnbl",
                                                       "SafetyNotifyEnbl", "ToolRecommendEnbl"})});
const Paths kSite = {"ExtenderSite",
                     "ExtenderSite/Survey",
                     "ExtenderSite/ConnRefSiteBSSID",
                     "ExtenderSite/WirelessType",
                     "ExtenderSite/WirelessName",
                     "ExtenderSite/EncryptionKey"};
constexpr const char* kUplink = "Device/UpLinkConnection";

Document With(const std::string& hardware, void (*connection)(Document&) = nullptr) {
  Document document = SampleDocument();
  UseHardware(document, hardware);
  if (connection != nullptr) {
    connection(document);
  }
  return document;
}

Document Plain10(const std::string& hardware) {
  Document document = Version10Document();
  UseHardware(document, hardware);
  return document;
}

Document Extender10() {
  Document document = Version10Document();
  document.Set("Device/ExtenderEnbl", "1");
  for (const std::string& path : Under("Device", kSite)) {
    document.Set(path, path == "Device/ExtenderSite/WirelessType" ? "2.4" : "");
  }
  return document.Set("Device/ExtenderSite/Survey", "0");
}

std::vector<Sample> Samples() {
  return {
      {"DHCP", SampleDocument(), false,
       Join({kHead,
             {"Device/EasyRoaming"},
             RadioPaths("Wireless2.4"),
             RadioPaths("Wireless5"),
             kSafety})},
      {"Static", With("Ethernet", UseStatic), false,
       Join({kHead, Under(kUplink, {"IP", "NetMask", "Gateway", "DNS"}), {"Device/EasyRoaming"}})},
      {"PPPoE over DSL", With("DSL", UsePppoe), false,
       Join({kHead, Under(kUplink, {"LoginUserName", "LoginPassword", "DSL", "DSL/CountryName",
                                    "DSL/IspName"})})},
      {"ADSL", With("ADSL"), false,
       Join({kHead, Under(kUplink, {"DSL", "DSL/CountryName", "DSL/IspName"})})},
      {"VDSL", With("VDSL"), false,
       Join({kHead, Under(kUplink, {"DSL", "DSL/CountryName", "DSL/IspName"})})},
      {"APN", With("WWanAPN"), false,
       Join({kHead, Under(kUplink, {"APN", "APN/CountryName", "APN/IspName"})})},
      {"extender", With("WWan802.11"), false, Join({kHead, Under(kUplink, kSite)})},
      {"1.0 DHCP", Version10Document(), true,
       Join({kHead,
             {"Device/UpLinkConnection/MTU", "Device/ExtenderEnbl"},
             RadioPaths10("Wireless2.4"),
             RadioPaths10("Wireless5"),
             kSafety})},
      {"1.0 DSL", Plain10("DSL"), true,
       Join({kHead,
             Under(kUplink, {"MTU", "DSL", "DSL/VPI", "DSL/VCI", "DSL/EncapsulationMode"}),
             {"Device/ExtenderEnbl"}})},
      {"1.0 ADSL", Plain10("ADSL"), true,
       Join({kHead, Under(kUplink, {"MTU", "DSL"}), {"Device/ExtenderEnbl"}})},
      {"1.0 APN", Plain10("WWanAPN"), true,
       Join({kHead, Under(kUplink, {"MTU", "APN"}), {"Device/ExtenderEnbl"}})},
      {"1.0 extender", Extender10(), true,
       Join({kHead,
             {"Device/UpLinkConnection/MTU", "Device/ExtenderEnbl"},
             Under("Device", kSite)})},
      {"1.0 wireless uplink", Plain10("WWan802.11"), true,
       Join({kHead, Under(kUplink, {"MTU"}), Under(kUplink, kSite), {"Device/ExtenderEnbl"}})},
  };
}

class MissingTest : public SettingsTest, public ::testing::WithParamInterface<Sample> {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    if (GetParam().is_version_10) {
      StoreVersion10Device();
    } else {
      StoreSampleDevice();
    }
  }

  static void ExpectMissing(const Document& document, const std::string& path) {
    Host().ClearCalls();
    Host().ClearCommands();
    EXPECT_EQ(Parse(document), 0) << path;
    EXPECT_EQ(Host().commands(), ResultCommands(2, Message(path), 0)) << path;
    EXPECT_TRUE(Host().Writes().empty()) << path;
  }
};

TEST_P(MissingTest, WholeDocumentHasAllThatIsRequired) {
  Parse(GetParam().document);
  EXPECT_NE(rssXmlData.setResult, 2) << rssXmlData.setMsg;
}

TEST_P(MissingTest, EachMissingElementIsTold) {
  for (const std::string& path : GetParam().paths) {
    Document document = GetParam().document;
    ExpectMissing(document.Remove(path), path);
  }
}

TEST_P(MissingTest, UnclosedElementIsMissing) {
  for (const std::string& path : GetParam().paths) {
    Document document = GetParam().document;
    const std::string name = path.substr(path.rfind('/') + 1);
    ExpectMissing(document.SetMarkup(path, "<" + name + ">1"), path);
  }
}

// Two missing elements: the one that is read first is told.
TEST_P(MissingTest, FirstMissingElementIsTold) {
  const Paths& paths = GetParam().paths;
  for (std::size_t first = 0; first + 1 < paths.size(); ++first) {
    for (std::size_t second = first + 1; second < paths.size(); ++second) {
      Document document = GetParam().document;
      document.Remove(paths[second]);
      ExpectMissing(document.Remove(paths[first]), paths[first]);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, MissingTest, ::testing::ValuesIn(Samples()));

}  // namespace
}  // namespace kio::test
