// Dump, variables and store.
#include <kioapp/kioapp.h>

#include <optional>

#include "../../../tools/differential/store.h"
#include "properties.h"
#include "settings_table.h"
#include "values.h"

namespace kio::properties {
namespace {

// On at "1" alone.
bool IsFlag(const std::string& path) {
  return path.starts_with("/safetyvyr/") || path == "/uplink/extendersite/survey";
}

// Whether the device has what the setting belongs to.
bool Exists(const std::string& path) {
  if (path.starts_with("/safetyvyr/")) {
    return rssXmlData.safetyVyrFeature != 0;
  }
  return path.starts_with("/lan/wireless2.4") ? rssXmlData.wlan24Feature != 0
         : path.starts_with("/lan/wireless5") ? rssXmlData.wlan5Feature != 0
                                              : true;
}

// The exception that a node falls under; null without one.
const char* ExceptionOf(const Setting& setting, const std::string& node, const std::string& value) {
  if (std::string(setting.element) == "WlAcMode" && value == "0") {
    return "exception rule-count-below-configurable";
  }
  if (setting.form != Form::kNumber) {
    return nullptr;
  }
  // What such a text reads as is the store's.
  constexpr int kLargest = 2147483647;
  return ToInt(node) == kLargest ? "exception a number of the store beyond int"
         : ToInt(node) < 0       ? "exception switches-without-lower-bound"
                                 : nullptr;
}

// Whether a variable tells what the store holds.
bool Agrees(const Setting& setting, const std::string& node, const std::string& value) {
  constexpr size_t kShortest = 15;  // of the texts that are cut
  if (setting.form == Form::kNumber) {
    return value ==
           (IsFlag(setting.node) ? (node == "1" ? "1" : "0") : std::to_string(ToInt(node)));
  }
  // A word is told as the table spells it.
  if (setting.form == Form::kWord && Lower(Trimmed(node)) == Lower(value)) {
    return true;
  }
  return node == value || (value.size() >= kShortest && node.starts_with(value));
}

// The line of the dump that shows a value; empty for one that shares its line.
std::string LineOf(const Setting& setting, const std::string& value) {
  const std::string path = setting.node;
  const std::string label = std::string(" +- ") + setting.element + "=";
  if (path == "/sys/routerenbl" || path.starts_with("/safetyvyr/")) {
    return label + value + "\n";
  }
  const bool is_text = path == "/sys/friendlyname" || path == "/sys/user:1/password" ||
                       path.ends_with("/wirelessname") || path.ends_with("/encryptionkey");
  return is_text && !path.starts_with("/uplink/") ? label + "'" + value + "'\n" : "";
}

std::string WrongInDump(const Setting& setting, const std::string& value, const std::string& dump,
                        Tally* tally) {
  const std::string line = LineOf(setting, value);
  if (line.empty()) {
    return {};
  }
  ++(*tally)["values in dumps"];
  const size_t section = dump.find(std::string(setting.block) + "\n");
  return section != std::string::npos && dump.find(line, section) != std::string::npos
             ? ""
             : "the dump does not show" + line;
}

}  // namespace

std::string DumpVariablesAndStoreAgree(Tally* tally) {
  ++(*tally)["dumps"];
  init_RssVar();
  const std::string dump = Dump();
  std::string wrong;
  for (const Setting& setting : Settings()) {
    const std::optional<std::string> node = differential::Store::Text(setting.node);
    if (!node || *setting.variable == '\0') {
      continue;
    }
    const std::string value = Variable(setting.variable);
    const char* const exception = ExceptionOf(setting, *node, value);
    if (!Exists(setting.node)) {
      continue;
    }
    if (exception != nullptr) {
      ++(*tally)[exception];
    } else {
      ++(*tally)["values compared"];
      if (!Agrees(setting, *node, value)) {
        wrong.append(setting.variable).append(" is ").append(value);
        wrong.append(", the node ").append(*node).append("\n");
      }
    }
    wrong += WrongInDump(setting, value, dump, tally);
  }
  return wrong;
}

}  // namespace kio::properties
