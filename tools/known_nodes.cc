#include "known_nodes.h"

#include <algorithm>
#include <limits>

#include "field_text.h"
#include "kioapp/record.h"
#include "kioapp/settings.h"
#include "settings/keywords.h"
#include "settings/verify_wlan.h"

namespace kio::tools {
namespace {

using settings::Check;
using settings::Load;

// A row as host/node_check.cc reads it.
struct Row {
  std::string kind = {};
  int low = 0;             // of a number; what counts for all other texts of a switch
  int high = 0;            // of a number; the longest text
  std::string words = {};  // with '|' between them
  std::string other = {};  // the node with the rule or the list
};

Row NumberRow(int low, int high) { return {.kind = "kNumber", .low = low, .high = high}; }

Row FlagRow(int others) { return {.kind = "kFlag", .low = others, .high = 1}; }

Row TextRow(std::string kind, const Field& field) {
  return {.kind = std::move(kind), .high = static_cast<int>(field.member.size) - 1};
}

// A text that is held to another node.
Row RuledRow(std::string kind, const StoreNode& node) {
  Row row = TextRow(std::move(kind), *node.field);
  row.other = RuleNode(*node.field, node.section);
  return row;
}

// The encryption types that go with each mode, as verification has it: "WEP:AUTO|OPEN|SHARED|;". An
// empty one stands for no type.
std::string TypesOfModes() {
  std::string text;
  const std::vector<std::string> modes = WordsOf(settings::kEncryptionModes);
  const std::vector<std::string> types = WordsOf(settings::kEncryptionTypes);
  static RssWlan wlan;
  for (std::size_t mode = 0; mode < modes.size(); ++mode) {
    text += modes[mode] + ":";
    for (std::size_t type = 0; type < types.size(); ++type) {
      wlan.encryptionModeCode = static_cast<int>(mode);
      wlan.encryptionTypeCode = static_cast<int>(type);
      if (settings::CheckEncryptionType(wlan) == KIOAPP_RESULT_APPLIED) {
        text += types[type] + "|";
      }
    }
    text += ";";
  }
  return text;
}

// A word that has to fit another node.
Row WordRow(const StoreNode& node) {
  const Field& field = *node.field;
  Row row = TextRow("kWord", field);
  row.words = Joined(WordsOf(field.words), "|");
  if (field.check == Check::kEncryptionType) {
    row.kind = "kTypeOfMode";
    row.words = TypesOfModes();
    row.other =
        WithPlaceholders(NodePrefix(node.section) +
                         Text(settings::RowOf(settings::kWlanFields, "EncryptionMode").node));
  } else if (field.element == settings::RowOf(settings::kUplinkFields, "HardwareType").element) {
    row.kind = "kListedWord";
    row.other = NodePrefix(node.section) +
                Text(settings::RowOf(settings::kUplinkFields, "HardwareSupport").node);
  }
  return row;
}

Row CheckedTextRow(const StoreNode& node) {
  const Field& field = *node.field;
  switch (field.check) {
    case Check::kRule:
      return RuledRow("kRuled", node);
    case Check::kRadioKey:
      return RuledRow("kRadioKey", node);
    case Check::kSiteKey:
      return RuledRow("kSiteKey", node);
    case Check::kHostAddress:
    case Check::kNameServer:
      return TextRow("kHostAddress", field);
    case Check::kNetmask:
      return TextRow("kNetmask", field);
    case Check::kChannel: {
      Row row = TextRow("kChannel", field);
      row.other = WithPlaceholders(NodePrefix(node.section)) + "/channellist";
      return row;
    }
    default:
      return TextRow("kText", field);
  }
}

Row FieldRow(const StoreNode& node) {
  const Field& field = *node.field;
  switch (field.load) {
    case Load::kIsOne:
      return FlagRow(0);
    case Load::kIsNotZero:
      return FlagRow(1);
    case Load::kCloningLevel:
      return NumberRow(0, 2);
    case Load::kRule:
      return TextRow("kRule", field);
    default:
      break;
  }
  if (field.member.type != settings::Member::Type::kText) {
    return field.check == Check::kInRange ? NumberRow(field.low, field.high)
                                          : NumberRow(0, std::numeric_limits<int>::max());
  }
  if (field.has_words()) {
    return WordRow(node);
  }
  return CheckedTextRow(node);
}

// The row of a node that stands in no table of fields, by the words that describe its value.
Row DescribedRow(const StoreNode& node) {
  constexpr int kLongest = 4095;
  const std::string text_mark = "text, ";
  if (node.path.ends_with('#')) {
    return {.kind = "kCounted"};
  }
  if (node.value == "a node above others") {
    return {.kind = "kParent"};
  }
  if (node.value == "integer") {
    return NumberRow(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
  }
  if (node.value == "0, or anything else") {
    return FlagRow(1);
  }
  if (node.value == "anything" || node.value == "text") {
    return {.kind = "kText", .high = kLongest};
  }
  if (node.value.starts_with(text_mark)) {
    return {.kind = "kText", .high = std::stoi(node.value.substr(text_mark.size()))};
  }
  if (node.value.starts_with('`')) {
    Row row{.kind = "kWord", .high = kLongest, .words = node.value};
    std::erase_if(row.words, [](char c) { return c == '`' || c == ' '; });
    std::replace(row.words.begin(), row.words.end(), ',', '|');
    return row;
  }
  return {};
}

// The path in the host's table. What counts nodes is no node: they are.
std::string ListedPath(std::string path) {
  return path.ends_with('#') ? path.replace(path.size() - 1, 1, ":{n}") : path;
}

bool IsListedItself(const std::vector<StoreNode>& nodes, const std::string& path) {
  return std::any_of(nodes.begin(), nodes.end(),
                     [&path](const StoreNode& node) { return node.path == path; });
}

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

}  // namespace

std::optional<std::string> KnownNodes(const std::vector<StoreNode>& nodes, std::string* error) {
  std::string table =
      "// Made from the library's tables; do not edit. `cmake --build --preset dev --target\n"
      "// reference_docs` makes it anew.\n"
      "// clang-format off\n";
  for (const StoreNode& node : nodes) {
    const Row row = node.field != nullptr ? FieldRow(node) : DescribedRow(node);
    if (row.kind.empty()) {
      *error = node.path + ": nothing is known of the value \"" + node.value + "\"";
      return std::nullopt;
    }
    const std::string path = ListedPath(node.path);
    if (path != node.path && IsListedItself(nodes, path)) {
      continue;
    }
    table += "{" + Quoted(path) + ", NodeKind::" + row.kind + ", " + std::to_string(row.low) +
             ", " + std::to_string(row.high) + ", " + Quoted(row.words) + ", " + Quoted(row.other) +
             "},\n";
  }
  return table + "// clang-format on\n";
}

}  // namespace kio::tools
