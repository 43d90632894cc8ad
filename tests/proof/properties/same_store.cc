// The same change as a document and as variables.
#include <kioapp/kioapp.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "../../../tools/differential/store.h"
#include "properties.h"
#include "settings_table.h"

namespace kio::properties {
namespace {

// Sets a variable when it has another value; tells whether that was refused.
bool IsRefused(const std::string& name, std::string value) {
  return Variable(name) != value && set_RssVar(name.c_str(), value.data()) != 0;
}

// Whether the document says of a section that it may not be changed.
bool LeavesOut(const std::string& document) {
  static constexpr char kTag[] = "<Configurable>";
  for (const char* at = strcasestr(document.c_str(), kTag); at != nullptr;
       at = strcasestr(at + 1, kTag)) {
    constexpr int kDecimal = 10;
    if (std::strtol(at + sizeof kTag - 1, nullptr, kDecimal) == 0) {
      return true;
    }
  }
  return false;
}

// Whether a switch that is on at "1" alone has another text than "0" and "1".
bool HasOddFlag(const Nodes& device) {
  return std::any_of(device.begin(), device.end(), [](const auto& node) {
    return (node.first.starts_with("/safetyvyr/") || node.first == "/uplink/extendersite/survey") &&
           node.second != "0" && node.second != "1";
  });
}

unsigned Act(const char* action) {
  char buffer[128] = "";
  constexpr int kWrite = 0x200;
  return setget_RssVar(action, buffer, kWrite);
}

// The exception that the case falls under as a whole; null without one.
const char* ExceptionOfAll(const Case& drawn) {
  return rssXmlData.specVer == 100 ? "version 1.0 has elements without a variable"
         : rssXmlData.upLink.extenderSite.survey != 0 ? "survey-excludes-the-rest"
         : LeavesOut(drawn.text)                      ? "configurable-zero-leaves-out"
         : HasOddFlag(drawn.device) ? "a switch of the store that is neither 0 nor 1"
                                    : nullptr;
}

// Begins a series and sets what differs between the device and `after`. Tells whether all was
// taken.
bool SetChanges(const Nodes& device, const Nodes& after, Tally* tally) {
  BeginAnew();
  SetAllNodes(device);
  init_RssVar();
  // The document asks for no survey. A node that does is not written by that.
  if (IsRefused("rss_Upl_Ets_Survey", "0")) {
    ++(*tally)["exception a survey that stands in an uplink that cannot be changed"];
    return false;
  }
  bool all = true;
  for (const Setting& setting : Settings()) {
    const auto value = after.find(setting.node);
    const auto before = device.find(setting.node);
    if (*setting.variable == '\0' || value == after.end() ||
        (before != device.end() && before->second == value->second)) {
      continue;
    }
    if (IsRefused(setting.variable, value->second)) {
      ++(*tally)[std::string("exception not taken as a variable: ") + setting.element];
      all = false;
    }
  }
  return all;
}

// Verifies and applies the series; what is wrong with that. `all` is false after an exception.
std::string Apply(bool* all, Tally* tally) {
  if (const unsigned code = Act("rss_Act_VerifyAllRssVars")) {
    const std::string message = rssXmlData.setMsg;
    const char* const exception = message.ends_with("MAC") ? "rules-filled-from-one"
                                  : message.ends_with("/WirelessBSSID")
                                      ? "WirelessBSSID cannot be set as a variable"
                                  : message.find("/ExtenderSite/") != std::string::npos
                                      ? "a site of the store that does not pass"
                                      : nullptr;
    if (exception != nullptr) {
      ++(*tally)[std::string("exception ") + exception];
      *all = false;
      return {};
    }
    return "the variables do not pass: " + std::to_string(code) + " " + message + "\n";
  }
  const unsigned code = Act("rss_Act_ApplyAllRssVars");
  return code == 0 ? ""
                   : "the variables are not applied: " + std::to_string(code) + " " +
                         rssXmlData.setMsg + "\n";
}

// What one store has otherwise than the other.
std::string DifferenceOf(const Nodes& one, const Nodes& other, Tally* tally) {
  std::string wrong;
  for (const auto& [path, text] : one) {
    // Applying a series removes the rules that it does not find, and their mode with them.
    if (path.find("/accesscontrol/acrule:") != std::string::npos ||
        path.ends_with("/accesscontrol/wlacmode")) {
      ++(*tally)["exception rule-count-below-configurable, as variables"];
      continue;
    }
    const auto found = other.find(path);
    if (found == other.end() || found->second != text) {
      wrong.append(path).append(" is ").append(text).append(", and ");
      wrong.append(found == other.end() ? "(absent)" : found->second).append("\n");
    }
  }
  return wrong;
}

}  // namespace

std::string VariablesDoTheSame(const Case& drawn, Tally* tally) {
  BeginAnew();
  SetAllNodes(drawn.device);
  std::string text = drawn.text;
  if (do_RssXml_Parser(text.data()) != 1) {
    return "the document is refused when it is sent once more\n";
  }
  const Nodes after = AllNodes();
  if (const char* const exception = ExceptionOfAll(drawn)) {
    ++(*tally)[std::string("exception ") + exception];
    return {};
  }
  bool all = SetChanges(drawn.device, after, tally);
  std::string wrong = all ? Apply(&all, tally) : "";
  if (!all || !wrong.empty()) {
    return wrong;
  }
  ++(*tally)["sent as variables"];
  const Nodes by_variables = AllNodes();
  return DifferenceOf(after, by_variables, tally) + DifferenceOf(by_variables, after, tally);
}

}  // namespace kio::properties
