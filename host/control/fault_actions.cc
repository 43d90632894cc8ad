#include "control/fault_actions.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "control/json_body.h"

namespace kiohost {
namespace {

using Kind = FaultKind;
using Times = FaultAction::Times;
using Names = std::array<std::string_view, 3>;

constexpr Names kOfRequest = {"method", "path", "from"};
constexpr Names kOfAccess = {"path", "access"};
constexpr Names kOfCommand = {"command"};
constexpr Names kOfDownload = {"download"};

constexpr FaultAction kActions[] = {
    {Kind::kDelay, "delay", kOfRequest, {"ms"}},
    {Kind::kDrip, "drip", kOfRequest, {"bytes_per_second"}},
    {Kind::kCut, "cut", kOfRequest, {"bytes"}},
    {Kind::kReset, "reset", kOfRequest},
    {Kind::kRefuse, "refuse", {"from"}},
    {Kind::kAnswer, "answer", kOfRequest, {"status"}, "retry_after"},
    {Kind::kStoreFails, "store-fails", kOfAccess},
    {Kind::kStoreSlow, "store-slow", kOfAccess, {"ms"}},
    {Kind::kStoreFull, "store-full"},
    {Kind::kStoreLocked, "store-locked"},
    {Kind::kCommandFails, "command-fails", kOfCommand, {}, "status"},
    {Kind::kCommandHangs, "command-hangs", kOfCommand, {"seconds"}},
    {Kind::kCommandMissing, "command-missing", kOfCommand},
    {Kind::kResultUnwritable, "result-unwritable"},
    {Kind::kFirmwareMissing, "firmware-missing", kOfDownload},
    {Kind::kFirmwareStops, "firmware-stops", kOfDownload, {"bytes"}},
    {Kind::kFirmwareChanged, "firmware-changed", {}, {}, "at"},
    {Kind::kFirmwareList, "firmware-list", {}, {"text"}},
    {Kind::kRadioMoves, "radio-moves", {}, {"radio", "channel"}, {}, Times::kOnce},
    {Kind::kRadioGone, "radio-gone", {}, {"radio"}, {}, Times::kAlways},
    {Kind::kPowerOff, "power-off", {"path", "command"}, {}, {}, Times::kOnce},
};

// Members whose numbers have bounds.
struct Range {
  std::string_view name;
  double least;
  double most;
};
constexpr double kDay = 86400;
constexpr double kMostCount = 1e9;
constexpr Range kRanges[] = {
    {"ms", 1, 60000},
    {"bytes_per_second", 1, 1e6},
    {"bytes", 0, kMostCount},
    {"retry_after", 1, kDay},
    {"seconds", 0.001, kDay},
    {"at", 0, kMostCount},
    {"count", 1, kMostCount},
    {"skip", 0, kMostCount},
    {"probability", 0.000001, 1},
    {"for_seconds", 0.001, 366 * kDay},
    {"seed", 0, 4294967295.0},
};

// Members of every rule.
constexpr std::string_view kCommon[] = {"action", "match", "for_seconds"};
// Those of rules that may act more than once, and those of all that act when they meet something.
constexpr std::string_view kCount = "count";
constexpr std::string_view kOfMeetings[] = {"skip", "probability", "seed"};

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

template <typename Range>
bool Has(const Range& names, std::string_view name) {
  return !name.empty() && std::find(std::begin(names), std::end(names), name) != std::end(names);
}

template <typename Range>
std::string Listed(const Range& names) {
  std::string list;
  for (const std::string_view name : names) {
    list.append(list.empty() || name.empty() ? "" : ", ").append(name);
  }
  return list;
}

std::string Shown(double number) {
  const auto whole = static_cast<int64_t>(number);
  return static_cast<double>(whole) == number ? std::to_string(whole) : Json(number).dump();
}

const FaultAction* FindAction(const Json& rule, std::string* fault) {
  const std::string name = rule.value("action", std::string());
  const auto* const found =
      std::find_if(std::begin(kActions), std::end(kActions),
                   [&name](const FaultAction& action) { return action.name == name; });
  if (found != std::end(kActions)) {
    return found;
  }
  std::string known;
  for (const FaultAction& action : kActions) {
    known.append(known.empty() ? "" : ", ").append(action.name);
  }
  *fault = "\"action\" takes one of " + known;
  return nullptr;
}

bool TakesMember(const FaultAction& action, std::string_view name) {
  if (Has(kCommon, name) || Has(action.needs, name) || action.takes == name) {
    return true;
  }
  return (name == kCount && action.times == Times::kMany) ||
         (Has(kOfMeetings, name) && action.times != Times::kAlways);
}

std::string FaultOfMembers(const FaultAction& action, const Json& rule) {
  for (const auto& [name, value] : rule.items()) {
    if (!TakesMember(action, name)) {
      return Quoted(name) + " does not go with " + Quoted(action.name);
    }
    for (const Range& range : kRanges) {
      const double number = value.is_number() ? value.get<double>() : 0;
      if (range.name == name && (number < range.least || number > range.most)) {
        return Quoted(name) + " takes a number from " + Shown(range.least) + " to " +
               Shown(range.most);
      }
    }
  }
  for (const std::string_view name : action.needs) {
    if (!name.empty() && !rule.contains(name)) {
      return Quoted(action.name) + " needs " + Quoted(name);
    }
  }
  return rule.contains("seed") && !rule.contains("probability")
             ? "\"seed\" goes with \"probability\""
             : "";
}

std::string FaultOfMatch(const FaultAction& action, const Json& match) {
  for (const auto& [name, value] : match.items()) {
    if (!Has(action.match, name)) {
      const std::string known = Listed(action.match);
      return Quoted(action.name) +
             (known.empty() ? " takes no \"match\"" : " takes in \"match\" only " + known);
    }
    if (!value.is_string() || value.get<std::string>().empty()) {
      return Quoted(name) + " takes a text that is not empty";
    }
  }
  const std::string access = match.value("access", std::string("read"));
  if (access != "read" && access != "write") {
    return R"("access" takes "read" or "write")";
  }
  constexpr std::string_view kDownloads[] = {"list", "image", "notes"};
  if (!Has(kDownloads, match.value("download", std::string("list")))) {
    return R"("download" takes "list", "image" or "notes")";
  }
  return match.contains("path") && match.contains("command")
             ? "\"match\" takes \"path\" or \"command\", not both"
             : "";
}

bool IsChannel(const std::string& text) {
  constexpr size_t kMostDigits = 3;
  return !text.empty() && text.size() <= kMostDigits &&
         text.find_first_not_of("0123456789") == std::string::npos;
}

std::string FaultOfValues(const FaultAction& action, const Json& rule) {
  const int64_t status = rule.value("status", int64_t{1});
  if (action.kind == Kind::kAnswer) {
    constexpr int64_t kError = 500;
    constexpr int64_t kUnavailable = 503;
    if (status != kError && status != kUnavailable) {
      return "\"status\" of \"answer\" takes 500 or 503";
    }
    if (status == kError && rule.contains("retry_after")) {
      return "\"retry_after\" goes with the status 503";
    }
  } else if (status < 1 || status > std::numeric_limits<uint8_t>::max()) {
    return "\"status\" of \"command-fails\" takes 1 to 255";
  }
  const std::string radio = rule.value("radio", std::string("5"));
  if (radio != "2.4" && radio != "5") {
    return R"("radio" takes "2.4" or "5")";
  }
  return IsChannel(rule.value("channel", std::string("1")))
             ? ""
             : "\"channel\" takes a number as a text";
}

}  // namespace

const FaultAction* CheckFaultRule(const Json& rule, std::string* fault) {
  using Type = JsonMember::Type;
  *fault = FaultOf(rule, {{"action", Type::kText},
                          {"match", Type::kObject},
                          {"count", Type::kWhole},
                          {"skip", Type::kWhole},
                          {"probability", Type::kNumber},
                          {"seed", Type::kWhole},
                          {"for_seconds", Type::kNumber},
                          {"ms", Type::kWhole},
                          {"bytes_per_second", Type::kWhole},
                          {"bytes", Type::kWhole},
                          {"status", Type::kWhole},
                          {"retry_after", Type::kWhole},
                          {"seconds", Type::kNumber},
                          {"at", Type::kWhole},
                          {"text", Type::kText},
                          {"radio", Type::kText},
                          {"channel", Type::kText}});
  const FaultAction* const action = fault->empty() ? FindAction(rule, fault) : nullptr;
  if (action == nullptr) {
    return nullptr;
  }
  *fault = FaultOfMembers(*action, rule);
  if (fault->empty()) {
    *fault = FaultOfMatch(*action, rule.value("match", Json::object()));
  }
  if (fault->empty()) {
    *fault = FaultOfValues(*action, rule);
  }
  return fault->empty() ? action : nullptr;
}

}  // namespace kiohost
