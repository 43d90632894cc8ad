#include "node_check.h"

#include <kioapp/validate.h>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "nodes.h"
#include "secrets.h"
#include "text.h"

namespace kiohost {
namespace {

enum class NodeKind {
  kText,
  kNumber,
  kFlag,  // 0 or 1
  kWord,
  kListedWord,  // stands in the text of another node
  kTypeOfMode,  // goes with the word of another node: "MODE:WORD|WORD|;" for each mode
  kRule,
  kRuled,  // obeys the rule of another node
  kHostAddress,
  kNetmask,
  kRadioKey,  // obeys a rule and goes with the mode of the radio
  kSiteKey,   // obeys a rule and is a key of some kind
  kChannel,   // stands in the list of another node
  kParent,    // has no text of its own
  kCounted,   // is counted: any text will do
};

// What the library knows of a node.
struct KnownNode {
  std::string_view path;  // in lower case; "{band}" stands for 2.4 and 5, "{n}" for an instance
  NodeKind kind;
  int low;                 // of a number; what all other texts of a switch count as
  int high;                // of a number; the longest text
  std::string_view words;  // with '|' between them
  std::string_view other;  // the node with the rule or the list
};

constexpr KnownNode kKnownNodes[] = {
#include "known_nodes.inc"
};

bool IsSame(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

// What a pattern leaves open.
struct Match {
  const KnownNode* known = nullptr;
  std::string band = {};
};

// Takes what a placeholder stands for from the start of a path; returns whether that is there.
bool Take(std::string_view placeholder, std::string_view* path, std::string* band) {
  size_t length = 0;
  if (placeholder == "{n}") {
    while (length < path->size() && IsDigit((*path)[length])) {
      ++length;
    }
  } else {
    length = path->starts_with("2.4") ? 3 : path->starts_with("5") ? 1 : 0;
    *band = path->substr(0, length);
  }
  path->remove_prefix(length);
  return length > 0;
}

bool Matches(std::string_view pattern, std::string_view path, std::string* band) {
  while (!pattern.empty()) {
    const size_t length = pattern[0] == '{' ? pattern.find('}') + 1 : 1;
    const std::string_view part = pattern.substr(0, length);
    if (length > 1) {
      if (!Take(part, &path, band)) {
        return false;
      }
    } else if (IsSame(part, path.substr(0, 1))) {
      path.remove_prefix(1);
    } else {
      return false;
    }
    pattern.remove_prefix(length);
  }
  return path.empty();
}

Match FindKnown(std::string_view path) {
  for (const KnownNode& known : kKnownNodes) {
    Match match{.known = &known};
    if (Matches(known.path, path, &match.band)) {
      return match;
    }
  }
  return {};
}

std::string WithBand(std::string_view pattern, const std::string& band) {
  std::string path(pattern);
  const size_t at = path.find("{band}");
  return at == std::string::npos ? path : path.replace(at, std::string_view("{band}").size(), band);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (true) {
    const size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) {
      return parts;
    }
    text.remove_prefix(end + 1);
  }
}

std::optional<int> NumberIn(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(number)
                                                                  : std::nullopt;
}

std::string NumberFault(const KnownNode& known, const std::string& text) {
  const std::optional<int> number = NumberIn(text);
  if (number && *number >= known.low && *number <= known.high) {
    return {};
  }
  if (known.high < std::numeric_limits<int>::max()) {
    return "is no number from " + std::to_string(known.low) + " to " + std::to_string(known.high);
  }
  return known.low == 0 ? "is no number of 0 or more" : "is no number";
}

bool Has(const std::vector<std::string_view>& words, std::string_view text) {
  return std::any_of(words.begin(), words.end(),
                     [text](std::string_view word) { return IsSame(word, text); });
}

std::string WordFault(const KnownNode& known, const std::string& text) {
  const std::vector<std::string_view> words = Split(known.words, '|');
  if (text.empty() || Has(words, text)) {
    return {};
  }
  std::string list;
  for (const std::string_view word : words) {
    list.append(list.empty() ? "" : ", ").append(word);
  }
  return "is none of " + list;
}

// In version 1.0 the list is not looked at.
std::string ListedWordFault(const KnownNode& known, const std::string& text,
                            const NodeTexts& others) {
  std::string fault = WordFault(known, text);
  const std::string list = others(known.other).value_or("");
  if (!fault.empty() || text.empty() || others(kMinorNode).value_or("") == "0" ||
      strcasestr(list.c_str(), text.c_str()) != nullptr) {
    return fault;
  }
  return "is not in " + std::string(known.other);
}

std::string TypeOfModeFault(const KnownNode& known, const std::string& mode_path,
                            const std::string& text, const NodeTexts& others) {
  const std::string mode = others(mode_path).value_or("");
  bool is_of_another = false;
  for (const std::string_view entry : Split(known.words, ';')) {
    const size_t colon = entry.find(':');
    if (colon == std::string_view::npos) {
      continue;
    }
    std::vector<std::string_view> types = Split(entry.substr(colon + 1), '|');
    types.pop_back();  // behind the last separator
    const bool fits = Has(types, text);
    if (IsSame(entry.substr(0, colon), mode)) {
      return fits ? "" : "does not go with the mode " + mode;
    }
    is_of_another |= fits;
  }
  // The mode is told of itself.
  return text.empty() || is_of_another ? "" : "is no type of any mode";
}

// The first fields of a rule are numbers, and it lets something pass. A missing one is no fault.
std::string RuleFault(const std::string& text) {
  constexpr size_t kNumbers = 3;
  constexpr size_t kMaximum = 1;
  constexpr size_t kMinimum = 2;
  const std::vector<std::string_view> fields = Split(text, ',');
  for (size_t i = 0; i < std::min(kNumbers, fields.size()); ++i) {
    const std::string field(Trim(fields[i]));
    char* end = nullptr;
    std::strtod(field.c_str(), &end);
    if (!text.empty() && (field.empty() || *end != '\0')) {
      return "is no rule: its field " + std::to_string(i + 1) + " is no number";
    }
  }
  if (fields.size() > kMinimum && std::strtod(std::string(fields[kMaximum]).c_str(), nullptr) <
                                      std::strtod(std::string(fields[kMinimum]).c_str(), nullptr)) {
    return "is a rule that nothing obeys: its maximum is below its minimum";
  }
  return {};
}

// The library gives a rule's entities back as characters before it uses them; a rule with entities
// is left to it.
std::string RuledFault(const std::string& rule_path, const std::string& text,
                       const NodeTexts& others) {
  const std::optional<std::string> rule = others(rule_path);
  if (text.empty() || !rule || rule->find('&') != std::string::npos ||
      validate_RssData(text.c_str(), rule->c_str()) == 0) {
    return {};
  }
  return "breaks the rule of " + rule_path + ", " + *rule;
}

bool IsWepKey(const std::string& key) {
  constexpr int kShort = 5;
  constexpr int kLong = 13;
  return is_Valid_WepKey(key.c_str(), kShort) != 0 || is_Valid_WepKey(key.c_str(), kLong) != 0;
}

std::string KeyFault(const Match& match, const std::string& text, const NodeTexts& others) {
  const bool is_wpa_key = is_Valid_WpaPskKey(text.c_str()) != 0;
  if (match.known->kind == NodeKind::kSiteKey) {
    return text.empty() || is_wpa_key || IsWepKey(text) ? "" : "is no key of any mode";
  }
  const std::string mode =
      others(WithBand("/lan/wireless{band}:1/encryptionmode", match.band)).value_or("");
  const bool fits = strncasecmp(mode.c_str(), "WPA", 3) == 0 ? is_wpa_key
                    : strcasecmp(mode.c_str(), "WEP") == 0   ? IsWepKey(text)
                                                             : true;
  return fits ? "" : "is no key for the mode " + mode;
}

std::string ChannelFault(const std::string& list_path, const std::string& text,
                         const NodeTexts& others) {
  const std::string list = others(list_path).value_or("");
  const std::vector<std::string_view> channels = Split(list, ',');
  return text.empty() ||
                 std::any_of(channels.begin(), channels.end(),
                             [&text](std::string_view channel) { return Trim(channel) == text; })
             ? ""
             : "is not in " + list_path;
}

std::string TextFault(const Match& match, const std::string& text, const NodeTexts& others) {
  const KnownNode& known = *match.known;
  // The rules for an upstream network are those of the radio that joins it.
  const std::string band = match.band.empty() && !known.other.empty()
                               ? others("/uplink/extendersite/wirelesstype").value_or("")
                               : match.band;
  const std::string other = WithBand(known.other, band);
  switch (known.kind) {
    case NodeKind::kNumber:
      return NumberFault(known, text);
    case NodeKind::kFlag:
      return text == "0" || text == "1"
                 ? ""
                 : "is neither 0 nor 1, and counts as " + std::to_string(known.low);
    case NodeKind::kParent:
      return text.empty() ? "" : "is not read: only what stands below the node is";
    case NodeKind::kWord:
      return WordFault(known, text);
    case NodeKind::kListedWord:
      return ListedWordFault(known, text, others);
    case NodeKind::kTypeOfMode:
      return TypeOfModeFault(known, other, text, others);
    case NodeKind::kRule:
      return RuleFault(text);
    case NodeKind::kRuled:
      return RuledFault(other, text, others);
    case NodeKind::kHostAddress:
      return text.empty() || is_Valid_IP(text.c_str()) != 0 ? "" : "is no IPv4 address of a host";
    case NodeKind::kNetmask:
      return text.empty() || is_Valid_Netmask(text.c_str()) != 0 ? "" : "is no IPv4 netmask";
    case NodeKind::kRadioKey:
    case NodeKind::kSiteKey: {
      const std::string fault = KeyFault(match, text, others);
      return fault.empty() ? RuledFault(other, text, others) : fault;
    }
    case NodeKind::kChannel:
      return ChannelFault(other, text, others);
    case NodeKind::kText:
    case NodeKind::kCounted:
      break;
  }
  return {};
}

bool HasLength(NodeKind kind) {
  return kind != NodeKind::kNumber && kind != NodeKind::kFlag && kind != NodeKind::kParent &&
         kind != NodeKind::kCounted;
}

}  // namespace

std::string NodeFault(const Node& node, const NodeTexts& others) {
  const Match match = FindKnown(node.path);
  if (match.known == nullptr) {
    return "the library knows no node " + node.path;
  }
  const auto limit = static_cast<size_t>(match.known->high);
  const std::string fault = HasLength(match.known->kind) && node.text.size() > limit
                                ? "is cut to " + std::to_string(limit) + " characters"
                                : TextFault(match, node.text, others);
  const std::string text = IsSecret(node.path) ? std::string(kMasked) : node.text;
  return fault.empty() ? "" : node.path + ": \"" + text + "\" " + fault;
}

}  // namespace kiohost
