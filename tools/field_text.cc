#include "field_text.h"

namespace kio::tools {
namespace {

using settings::Check;
using settings::Load;
using settings::Write;

void Replace(std::string& text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  if (at != std::string::npos) {
    text.replace(at, part.size(), by);
  }
}

bool IsOfRadio(SectionId section) {
  return section == SectionId::kRadio || section == SectionId::kAccess ||
         section == SectionId::kSite;
}

std::string RuleReference(const Field& field, const SectionInstance& instance) {
  return "the rule in " + Code(RuleNode(field, instance));
}

}  // namespace

std::string RuleNode(const Field& field, const SectionInstance& instance) {
  // A rule is a member of a radio or of the record.
  for (const Table<Field>& table : kFieldTables) {
    for (const Field& row : table) {
      if (row.load == Load::kRule && row.member.offset == field.rule.offset &&
          (table.section == SectionId::kRadio) == IsOfRadio(instance.section)) {
        return WithPlaceholders(NodePrefix({.section = table.section, .radio = instance.radio}) +
                                Text(row.node));
      }
    }
  }
  return {};
}

std::string WithPlaceholders(std::string path) {
  Replace(path, "ireless2.4", "ireless{band}");
  Replace(path,
          "?"
          "?",
          "{n}");
  return path;
}

std::string Code(const std::string& text) { return text.empty() ? "" : "`" + text + "`"; }

std::string Joined(const std::vector<std::string>& parts, const std::string& separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (!part.empty()) {
      text += (text.empty() ? "" : separator) + part;
    }
  }
  return text;
}

std::string TypeOf(const Field& field) {
  return field.member.type == settings::Member::Type::kText
             ? "text, " + std::to_string(field.member.size - 1)
             : "integer";
}

std::string WordList(const Field& field) {
  std::vector<std::string> words;
  if (field.has_words()) {
    for (const std::string& word : WordsOf(field.words)) {
      words.push_back(word.empty() ? "nothing" : Code(word));
    }
  }
  return Joined(words, ", ");
}

std::string RangeOf(const Field& field, const SectionInstance& instance) {
  switch (field.check) {
    case Check::kNothing:
      return field.write == Write::kSwitch ? "at most 1, or what is stored" : "";
    case Check::kInRange:
      return std::to_string(field.low) + " to " + std::to_string(field.high);
    case Check::kFilled:
      return "not empty";
    case Check::kRule:
      return RuleReference(field, instance);
    case Check::kKeyword:
      return "a word";
    case Check::kHostAddress:
      return "an IPv4 address of a host";
    case Check::kNetmask:
      return "an IPv4 netmask";
    case Check::kNameServer:
      return "an IPv4 address of a host, or empty";
    case Check::kEncryptionType:
      return "a word that the mode allows";
    case Check::kRadioKey:
      return "a key for the mode, and " + RuleReference(field, instance);
    case Check::kSiteKey:
      return "a key of some kind or empty, and " + RuleReference(field, instance);
    case Check::kChannel:
      return "a channel of " + Code(WithPlaceholders(NodePrefix(instance)) + "/channellist");
  }
  return {};
}

}  // namespace kio::tools
