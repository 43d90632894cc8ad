#include "fields/scene.h"

#include <algorithm>

#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

constexpr const char* kNames[] = {"Dhcp",   "Static",   "Pppoe",   "Adsl",  "Apn",    "Site",
                                  "Dhcp10", "Static10", "Pppoe10", "Dsl10", "Site10", "Extender10"};

void Store(bool version_10) {
  FakeHost& host = FakeHost::Get();
  host.Reset();
  ClearRecord();
  // Full snapshots load as many rules as this says.
  if (version_10) {
    StoreVersion10Device();
    for (const char* radio : {"/lan/wireless2.4:1", "/lan/wireless5:1"}) {
      host.Set(std::string(radio) + "/encryptiontype", "AUTO");
    }
  } else {
    StoreSampleDevice();
  }
  host.Set("/lan/wireless2.4:1/configurable/acrule#", 2);
  host.Set("/lan/wireless5:1/configurable/acrule#", 2);
}

void Use(Document& document, const std::string& hardware) {
  UseHardware(document, hardware);
  FakeHost::Get().Set("/uplink/hardwaretype", hardware);
}

void Extend(Document& document) {
  const std::string site = "Device/ExtenderSite/";
  document.Set("Device/ExtenderEnbl", "1").Set(site + "Survey", "0");
  document.Set(site + "ConnRefSiteBSSID", "02:00:00:00:99:01").Set(site + "WirelessType", "2.4");
  document.Set(site + "WirelessName", "Upstream").Set(site + "EncryptionKey", "upstream-key");
}

}  // namespace

std::string NameOf(Scene scene) { return kNames[static_cast<int>(scene)]; }

Document Prepare(Scene scene) {
  const bool version_10 = scene >= Scene::kDhcp10;
  Store(version_10);
  FakeHost& host = FakeHost::Get();
  Document document = version_10 ? Version10Document() : SampleDocument();
  switch (scene) {
    case Scene::kDhcp:
    case Scene::kDhcp10:
      break;
    case Scene::kStatic:
    case Scene::kStatic10:
      UseStatic(document);
      host.Set("/uplink/conntype", "Static");
      break;
    case Scene::kPppoe:
    case Scene::kPppoe10:
      UsePppoe(document);
      host.Set("/uplink/conntype", "PPPoE");
      break;
    case Scene::kAdsl:
      Use(document, "ADSL");
      break;
    case Scene::kApn:
      Use(document, "WWanAPN");
      break;
    case Scene::kSite:
    case Scene::kSite10:
      Use(document, "WWan802.11");
      break;
    case Scene::kDsl10:
      Use(document, "DSL");
      break;
    case Scene::kExtender10:
      Extend(document);
      break;
  }
  return document;
}

std::vector<std::string> RealChanges() {
  std::vector<std::string> changes = Changes();
  const auto is_no_change = [](const std::string& change) {
    return change == kMode24 || change == kMode5 || change == kNotFactory;
  };
  changes.erase(std::remove_if(changes.begin(), changes.end(), is_no_change), changes.end());
  return changes;
}

}  // namespace kio::test
