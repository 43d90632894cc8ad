#include "catalogue.h"

#include "kioapp/variables.h"
#include "sections.h"
#include "settings/record.h"

namespace kio::tools {
namespace {

using settings::VariableKind;
using variables::Variable;

constexpr std::size_t kValueCapacity = KIOAPP_VAR_SIZE - 1;
constexpr int kLastTwoDigits = 99;

// The name of the variable that holds a rule for the fields of `instance`.
std::string RuleName(const settings::Member& rule, const SectionInstance& instance) {
  const bool in_record = instance.section != SectionId::kRadio;
  for (const Variable& variable : variables::kVariables) {
    if (!variable.is_live() && variable.in_record() == in_record &&
        (in_record || variable.section() == instance.section) &&
        variable.field().member.offset == rule.offset) {
      return NamePrefix(variable.section(), instance.radio) + Text(variable.name());
    }
  }
  return {};
}

// The variable that holds what a value is checked by.
std::string RuleIn(const Field& field, const SectionInstance& instance) {
  if (field.variable_kind == VariableKind::kRule) {
    return RuleName(field.rule, instance);
  }
  return field.variable_kind == VariableKind::kChannel
             ? NamePrefix(SectionId::kRadio, instance.radio) + "ChannelList"
             : std::string();
}

std::string CheckOf(const Field& field, const SectionInstance& instance) {
  switch (field.variable_kind) {
    case VariableKind::kNone:
    case VariableKind::kReadOnly:
      return {};
    case VariableKind::kAnything:
      return "none";
    case VariableKind::kFlag:
      return "0 or 1";
    case VariableKind::kSwitch:
      return "any number; no other one than now when that is 2 or more";
    case VariableKind::kKeyword:
      return "one of the words; a good word that is only checked gives code 2";
    case VariableKind::kRule:
      return "the rule in " + RuleIn(field, instance);
    case VariableKind::kHostAddress:
      return "an IPv4 address of a host";
    case VariableKind::kNetmask:
      return "an IPv4 netmask";
    case VariableKind::kChannel:
      return "a channel of " + RuleIn(field, instance);
    case VariableKind::kRoaming:
      return "four numbers: below 0, not below 0, above 0, above 0";
  }
  return {};
}

// When the app may change the section. A section without a switch goes by the one above it.
std::vector<CatalogueEntry::Condition> ConfigurableWhen(const SectionInstance& instance) {
  const settings::Section& row = settings::RowOf(instance.section);
  const std::string prefix = NodePrefix({.section = instance.section, .radio = instance.radio});
  if (row.configurable.size == 0) {
    return settings::IsTopmost(row)
               ? std::vector<CatalogueEntry::Condition>()
               : ConfigurableWhen({.section = row.parent, .radio = instance.radio});
  }
  for (const Field& field : row.fields) {
    if (field.member.offset == row.configurable.offset) {
      return {{prefix + Text(field.node), true, {"1"}}};
    }
  }
  // A radio that is not there cannot be changed, either.
  return {{prefix + "/configurable", false, {"0"}},
          {prefix + Text(settings::RowOf(settings::kWlanFields, "WlEnbl").node),
           true,
           {"", "0", "1", "3"}}};
}

void DescribeRange(const Field& field, CatalogueEntry* entry) {
  entry->has_range = entry->is_writable && (field.check == settings::Check::kInRange ||
                                            field.variable_kind == VariableKind::kFlag);
  if (entry->has_range) {
    const bool has_row = field.check == settings::Check::kInRange;
    entry->minimum = has_row ? field.low : 0;
    entry->maximum = has_row ? field.high : 1;
  }
}

void DescribeField(const Variable& variable, const SectionInstance& instance,
                   CatalogueEntry* entry) {
  const Field& field = variable.field();
  if (!field.node.empty()) {
    entry->store_node = NodePrefix(instance) + Text(field.node);
  }
  if (field.hides_path) {
    entry->path_answer.clear();
  }
  if (field.has_words()) {
    entry->words = WordsOf(field.words);
    entry->kind = CatalogueEntry::Kind::kKeyword;
  } else if (field.member.type == settings::Member::Type::kInt) {
    entry->kind = CatalogueEntry::Kind::kInteger;
  }
  entry->capacity = field.member.size - std::size_t{1};
  entry->is_writable = field.variable_kind != VariableKind::kReadOnly;
  if (entry->is_writable) {
    entry->configurable_when = ConfigurableWhen(instance);
  }
  entry->needs_configurable = !entry->configurable_when.empty();
  entry->check = CheckOf(field, instance);
  entry->rule_in = RuleIn(field, instance);
  DescribeRange(field, entry);
  if (!field.element.empty() && entry->is_writable) {
    entry->fault_path =
        FaultPrefix(instance) + Text(field.fault_name.empty() ? field.element : field.fault_name);
  }
}

void DescribeLive(const LiveNode& live, CatalogueEntry* entry) {
  entry->store_node = live.node.empty() ? entry->path_answer : Text(live.node);
  entry->capacity = kValueCapacity;
  if (live.kind == LiveNode::Kind::kNumber || live.kind == LiveNode::Kind::kNumberOrOne) {
    entry->kind = CatalogueEntry::Kind::kInteger;
  }
}

CatalogueEntry Describe(const Variable& variable, const SectionInstance& instance) {
  CatalogueEntry entry;
  entry.name = NamePrefix(instance.section, instance.radio) + Text(variable.name());
  const char* path = cvtRss_XmlPathVsVarName(entry.name.c_str(), 1);
  entry.document_path = path == nullptr ? "" : path;
  if (instance.section == SectionId::kRule) {
    entry.is_indexed = true;
    entry.last_index = settings::kRuleCapacity - 1;
    entry.index_count = NamePrefix(SectionId::kAccess, instance.radio) + "AcRuleNo";
  } else if (instance.section == SectionId::kSurveySite) {
    entry.is_indexed = true;
    entry.last_index = kLastTwoDigits;
    entry.index_count = NamePrefix(SectionId::kSurvey, 0) + "SiteNo";
  }
  entry.path_answer = VariablePath(variable, instance, entry.is_indexed);
  if (variable.is_live()) {
    DescribeLive(variable.live(), &entry);
  } else {
    DescribeField(variable, instance, &entry);
  }
  return entry;
}

}  // namespace

std::vector<CatalogueEntry> ListVariables() {
  std::vector<CatalogueEntry> entries;
  std::vector<CatalogueEntry> second_radio;
  for (const Variable& variable : variables::kVariables) {
    // The rows of the second radio follow those of the first.
    if (!settings::RowOf(variable.section()).of_radio) {
      entries.insert(entries.end(), second_radio.begin(), second_radio.end());
      second_radio.clear();
    } else {
      second_radio.push_back(Describe(variable, {.section = variable.section(), .radio = 1}));
    }
    entries.push_back(Describe(variable, {.section = variable.section()}));
  }
  entries.insert(entries.end(), second_radio.begin(), second_radio.end());
  return entries;
}

}  // namespace kio::tools
