// One settings exchange, from the document to the result document.

#include "kioapp/settings.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/parse_fields.h"
#include "settings/parse_uplink.h"
#include "settings/parse_wlan.h"
#include "settings/step.h"
#include "settings/xml/required.h"

namespace kio::settings {
namespace {

using platform::kLogAction;
using platform::kLogDetail;
using platform::kLogFailure;

// The first exchange of the process forgets the actions that were pending before it.
bool g_first_parse = true;

// The document's root, with the text cut at its end.
Block FindRoot(char* text) {
  platform::LogEntry("do_RssRoot_Parser");
  if (text == nullptr) {
    return {};
  }
  const Element root = FindElement({text, 0, nullptr}, "root");
  if (!root.is_complete()) {
    return {};
  }
  char* const end = root.content.text + root.content.length;
  *end = '\0';
  return {root.content.text, root.content.length, end};
}

bool VersionMatches(const Block& root) {
  RssSpecVersion version = {};
  if (do_XmlSpecVersion_Parser(nullptr, root.text, root.length, &version, "specVersion") == 0) {
    return false;
  }
  platform::CopyText(Record().specName, "specVersion");
  // Quirk "versions-compare-combined": 0.101 equals 1.1.
  if (version.combined != Record().specVer) {
    KIO_LOG(kLogFailure, "Wrong Spec Version! Device=%d.%d, XML=%d.%d\n", Record().specMajor,
            Record().specMinor, version.major, version.minor);
    write_RssXml_ResultXml(KIOAPP_RESULT_VERSION_MISMATCH, "", 0);
    return false;
  }
  return true;
}

// Reads the device itself and its uplink: what a document with the settings of another access point
// does not change.
Step ParseOwnSettings(BlockReader& device, const char* path) {
  if (IsNotConfigurable(device)) {
    Record().configurable = 0;
    return Step::kStageDone;
  }
  if (!ParseFields(kDeviceFields, Group::kBasic, device, path, &Record())) {
    return Step::kRefused;
  }
  if (Record().upLink.configurable != 0 && !ParseUplink(path, device.block())) {
    return Step::kRefused;
  }
  if (!ParseFields(kDeviceFields, Group::kExtender, device, path, &Record())) {
    return Step::kRefused;
  }
  return GoOnIf(!IsExtender10() || ParseSite(path, device.block(), Record().upLink.extenderSite));
}

bool ParseRoaming(BlockReader& device, const char* path) {
  return Record().easyRoamingFeature == 0 ||
         ParseFields(kDeviceFields, Group::kRoaming, device, path, &Record());
}

bool ParseSafety(const Block& device, const char* path) {
  RssSafetyVyr& safety = Record().safetyVyr;
  LogSection(SectionId::kSafety, path);
  const Block block =
      FindRequiredBlock(path, device, RowOf(SectionId::kSafety).element, safety.path);
  BlockReader reader(block);
  return block.text != nullptr &&
         ParseFields(kSafetyFields, Group::kBasic, reader, safety.path, &safety);
}

bool ParseRadiosAndSafety(const Block& device, const char* path) {
  for (int radio = 0; radio < kRadioCount; ++radio) {
    if (RadioExists(radio) && !ParseRadio(path, device, radio)) {
      return false;
    }
  }
  return Record().safetyVyrFeature == 0 || ParseSafety(device, path);
}

bool ParseDevice(const Block& root) {
  LogSection(SectionId::kDevice, nullptr);
  char path[128];
  const Block device = FindRequiredBlock(nullptr, root, RowOf(SectionId::kDevice).element, path);
  if (device.text == nullptr) {
    return false;
  }
  BlockReader reader(device);
  if (Record().apCloningOnly == 0) {
    const Step step = ParseOwnSettings(reader, path);
    // So far the paths had the name under which missing elements are reported. From here on they
    // have the one for faulty values.
    SetUplinkPaths();
    if (step != Step::kGoOn) {
      return step == Step::kStageDone;
    }
  }
  return ParseRoaming(reader, path) && ParseRadiosAndSafety(device, path);
}

int VerifyAndApply() {
  if (Verify_RssXml() == 0) {
    return 0;
  }
  const int applied = Apply_RssXmlToDevice();
  // Quirk "failure-keeps-masks": after a refusal the masks are still those of the exchange before.
  if (applied != 0) {
    calc_RssExeFlag();
    write_RssXml_ResultXml(KIOAPP_RESULT_APPLIED, "", Record().exeWaitSec);
  }
  return applied;
}

int RunExchange(char* text) {
  const Block root = FindRoot(text);
  // Quirk "no-root-no-result": an earlier result document stays.
  if (root.text == nullptr) {
    return 0;
  }
  // Quirk "first-parse-clears-previous-actions": the current ones stay.
  if (g_first_parse) {
    g_first_parse = false;
    Record().pre_exeflag = 0;
  }
  restore_XmlRssStatus(0);
  // Quirk "fixed-device-accepts": nothing but the version of its documents is looked at.
  if (!VersionMatches(root) || (Record().configurable == 1 && !ParseDevice(root))) {
    return 0;
  }
  return VerifyAndApply();
}

}  // namespace
}  // namespace kio::settings

int do_XmlSpecVersion_Parser(const char* parentPath, char* block, int len, RssSpecVersion* out,
                             const char* key) {
  using kio::settings::Block;
  if (out == nullptr) {
    return 0;
  }
  char path[128];
  const Block version = kio::settings::FindRequiredBlock(parentPath, Block{block, len, nullptr},
                                                         kio::platform::TextOf(key), path);
  if (version.text == nullptr) {
    return 0;
  }
  kio::platform::CopyText(out->path, path);
  if (GetXmlKeyIntValue(version.text, version.length, path, "major", &out->major) == 0 ||
      GetXmlKeyIntValue(version.text, version.length, path, "minor", &out->minor) == 0) {
    return 0;
  }
  out->combined = kio::settings::CombinedVersion(out->major, out->minor);
  return 1;
}

int do_RssXml_Parser_(char* text) {
  using kio::platform::kLogAction;
  using kio::platform::kLogDetail;
  kio::platform::LogEntry("do_RssXml_Parser_");
  KIO_LOG(kLogAction,
          "---- Received Rss XML Data Begin ----\n%s\n---- Received Rss XML Data End ----\n",
          text != nullptr ? text : "");
  kio::OnLostKey() = write_RssXml_LostKeyError;
  const int result = kio::settings::RunExchange(text);
  dump_RssXmlData();
  KIO_LOG(kLogDetail, "done, ret=%d\n", result);
  return result;
}

int do_RssXml_Parser(char* text) {
  kio::Record().apCloningOnly = 0;
  return do_RssXml_Parser_(text);
}

int do_RssXml_Parser_for_ApCloning(char* text) {
  kio::Record().apCloningOnly = 1;
  return do_RssXml_Parser_(text);
}
