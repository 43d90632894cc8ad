#include "same_answer.h"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "record.h"

namespace kioctl {
namespace {

using nlohmann::json;

// Members that tell the time, or how far the router has come with its work.
const std::set<std::string> kOfTheMoment = {"uptime", "secondsLeft", "state"};

// A piece of a text: an id, or what lies between ids.
struct Piece {
  std::string text;
  bool is_id;
};

// Ids are 16 or 32 digits of lower case, with nothing of the kind beside them.
std::vector<Piece> PiecesOf(const std::string& text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr std::string_view kWord =
      "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
  constexpr size_t kShort = 16;
  constexpr size_t kLong = 32;
  std::vector<Piece> pieces(1);
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find_first_not_of(kWord, at), text.size());
    const std::string word = text.substr(at, end - at);
    const bool is_id = (word.size() == kShort || word.size() == kLong) &&
                       word.find_first_not_of(kDigits) == std::string::npos;
    if (is_id) {
      pieces.push_back({word, true});
      pieces.push_back({});
    } else {
      pieces.back().text += word;
    }
    const size_t next = std::min(text.find_first_of(kWord, end), text.size());
    pieces.back().text.append(text, end, next - end);
    at = next;
  }
  return pieces;
}

// What stands for a secret may be anything.
bool IsFilledIn(const std::string& recorded, const std::string& now) {
  const std::optional<FoundMark> first = FindMark(recorded, 0);
  if (!first) {
    return recorded == now;
  }
  if (!now.starts_with(recorded.substr(0, first->begin))) {
    return false;
  }
  size_t found = first->begin;
  size_t at = first->begin + first->length;
  for (auto mark = FindMark(recorded, at); mark; mark = FindMark(recorded, at)) {
    const std::string between = recorded.substr(at, mark->begin - at);
    found = now.find(between, found);
    if (found == std::string::npos) {
      return false;
    }
    found += between.size();
    at = mark->begin + mark->length;
  }
  const std::string rest = recorded.substr(at);
  return now.size() >= found + rest.size() && now.ends_with(rest);
}

// The router may be further with its work now.
bool IsLater(const std::string& recorded, const std::string& now) {
  return (recorded == "applied" && now == "in-force") ||
         (recorded == "going-back" && now == "rolled-back");
}

std::string Shown(const json& value) {
  return value.is_discarded() ? "nothing"
                              : value.dump(-1, ' ', false, json::error_handler_t::replace);
}

bool IsJson(const Reply& reply) { return reply.Header("content-type").ends_with("json"); }

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::string HeaderKey(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

std::optional<Difference> AnswerComparison::Compare(const Reply& recorded, const Reply& now) {
  if (recorded.status != now.status) {
    return Difference{"the status", std::to_string(recorded.status), std::to_string(now.status)};
  }
  const Ids before = ids_;
  std::optional<Difference> difference = CompareHeaders(recorded, now);
  if (!difference) {
    difference = CompareBodies(recorded, now);
  }
  if (difference) {
    ids_ = before;
  }
  return difference;
}

std::optional<Difference> AnswerComparison::CompareHeaders(const Reply& recorded,
                                                           const Reply& now) {
  for (const auto& [name, value] : recorded.headers) {
    const std::string lower = HeaderKey(name);
    const auto found = now.headers.find(lower);
    const bool is_same =
        found != now.headers.end() && (lower == "retry-after" || AreSame(value, found->second));
    if (!is_same) {
      return Difference{"the header " + name, value,
                        found == now.headers.end() ? "nothing" : found->second};
    }
  }
  return std::nullopt;
}

std::optional<Difference> AnswerComparison::CompareBodies(const Reply& recorded, const Reply& now) {
  const json before = IsJson(now) ? json::parse(recorded.body, nullptr, false) : json();
  const json after = IsJson(now) ? json::parse(now.body, nullptr, false) : json();
  if (IsJson(now) && !before.is_discarded() && !after.is_discarded()) {
    return CompareJson("", before, after);
  }
  if (AreSame(recorded.body, now.body)) {
    return std::nullopt;
  }
  std::vector<std::string> lines = LinesOf(recorded.body);
  std::vector<std::string> own = LinesOf(now.body);
  lines.resize(std::max(lines.size(), own.size()) + 1);
  own.resize(lines.size());
  size_t line = 0;
  while (line + 1 < lines.size() && AreSame(lines[line], own[line])) {
    ++line;
  }
  return Difference{"line " + std::to_string(line + 1) + " of the body", lines[line], own[line]};
}

std::optional<Difference> AnswerComparison::CompareJson(const std::string& path,
                                                        const json& recorded, const json& now) {
  if (recorded.is_object() && now.is_object()) {
    return CompareMembers(path, recorded, now);
  }
  if (recorded.is_array() && now.is_array()) {
    return CompareItems(path, recorded, now);
  }
  bool is_same = recorded.type() == now.type() && (recorded.is_discarded() || recorded == now);
  if (recorded.is_string() && now.is_string()) {
    const auto& before = recorded.get_ref<const std::string&>();
    const auto& after = now.get_ref<const std::string&>();
    is_same = AreSame(before, after) || IsLater(before, after);
  }
  return is_same ? std::nullopt
                 : std::optional(Difference{"the body at " + (path.empty() ? "/" : path),
                                            Shown(recorded), Shown(now)});
}

std::optional<Difference> AnswerComparison::CompareMembers(const std::string& path,
                                                           const json& recorded, const json& now) {
  json all = recorded;
  all.update(now);
  const json none(json::value_t::discarded);
  for (const auto& [name, ignored] : all.items()) {
    const json before = recorded.value(name, none);
    const json after = now.value(name, none);
    std::string below = path;
    below.append("/").append(name);
    const bool is_any = kOfTheMoment.contains(name) && before.type() == after.type();
    if (auto difference = is_any ? std::nullopt : CompareJson(below, before, after)) {
      return difference;
    }
  }
  return std::nullopt;
}

std::optional<Difference> AnswerComparison::CompareItems(const std::string& path,
                                                         const json& recorded, const json& now) {
  const json none(json::value_t::discarded);
  for (size_t i = 0; i < std::max(recorded.size(), now.size()); ++i) {
    std::string below = path;
    below.append("/").append(std::to_string(i));
    if (auto difference = CompareJson(below, i < recorded.size() ? recorded[i] : none,
                                      i < now.size() ? now[i] : none)) {
      return difference;
    }
  }
  return std::nullopt;
}

bool AnswerComparison::AreSame(const std::string& recorded, const std::string& now) {
  const std::vector<Piece> before = PiecesOf(recorded);
  const std::vector<Piece> after = PiecesOf(now);
  if (before.size() != after.size()) {
    return IsFilledIn(recorded, now);
  }
  Ids ids = ids_;
  for (size_t i = 0; i < before.size(); ++i) {
    const auto& [text, is_id] = before[i];
    if (is_id != after[i].is_id || (!is_id && !IsFilledIn(text, after[i].text)) ||
        (is_id && ids.emplace(text, after[i].text).first->second != after[i].text)) {
      return IsFilledIn(recorded, now);
    }
  }
  ids_ = std::move(ids);
  return true;
}

std::string AnswerComparison::WithOwnIds(const std::string& text) const {
  std::string own;
  for (const Piece& piece : PiecesOf(text)) {
    const auto known = piece.is_id ? ids_.find(piece.text) : ids_.end();
    own += known == ids_.end() ? piece.text : known->second;
  }
  return own;
}

}  // namespace kioctl
