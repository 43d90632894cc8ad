#include "rule_text.h"

#include <cstdlib>
#include <vector>

namespace kiohost {
namespace {

// The fields of a rule. A backslash keeps a comma, or another backslash, in its field.
std::vector<std::string> FieldsOf(std::string_view rule) {
  std::vector<std::string> fields(1);
  for (size_t i = 0; i < rule.size(); ++i) {
    if (rule[i] == ',') {
      fields.emplace_back();
      continue;
    }
    if (rule[i] == '\\' && i + 1 < rule.size() && (rule[i + 1] == ',' || rule[i + 1] == '\\')) {
      ++i;
    }
    fields.back() += rule[i];
  }
  return fields;
}

class Fields {
 public:
  explicit Fields(std::string_view rule) : fields_(FieldsOf(rule)) {}

  bool Has(size_t index) const { return index < fields_.size(); }
  int Number(size_t index, int absent) const {
    constexpr int kDecimal = 10;
    return Has(index) ? static_cast<int>(std::strtol(fields_[index].c_str(), nullptr, kDecimal))
                      : absent;
  }
  double Real(size_t index) const { return std::strtod(fields_[index].c_str(), nullptr); }
  // The texts from a field on that are not empty.
  Json From(size_t index) const {
    Json texts = Json::array();
    for (; Has(index); ++index) {
      if (!fields_[index].empty()) {
        texts.push_back(fields_[index]);
      }
    }
    return texts;
  }

 private:
  std::vector<std::string> fields_;
};

// The places of the fields.
constexpr size_t kMaximum = 1;
constexpr size_t kMinimum = 2;
constexpr size_t kAnyCharacter = 3;
constexpr size_t kAllowList = 4;
constexpr size_t kFirstRange = 5;

Json AcceptedText(const Fields& fields) {
  constexpr int kDefaultMaximum = 9999;
  Json accepted = {{"minLength", fields.Number(kMinimum, 1)},
                   {"maxLength", fields.Number(kMaximum, kDefaultMaximum)},
                   {"characters", fields.Number(kAnyCharacter, 0) != 0 ? "any" : "printable"}};
  Json ranges = fields.From(kFirstRange);
  const bool allows = fields.Number(kAllowList, 0) != 0;
  if (allows || !ranges.empty()) {
    accepted[allows ? "only" : "not"] = std::move(ranges);
  }
  return accepted;
}

Json AcceptedNumber(const Fields& fields) {
  Json accepted = Json::object();
  if (fields.Has(kMinimum)) {
    accepted["minimum"] = fields.Real(kMinimum);
  }
  if (fields.Has(kMaximum)) {
    accepted["maximum"] = fields.Real(kMaximum);
  }
  return accepted;
}

std::string NumberText(const Json& number) {
  const auto value = number.get<double>();
  const auto whole = static_cast<int64_t>(value);
  return static_cast<double>(whole) == value ? std::to_string(whole) : Json(value).dump();
}

// The ranges, each in quotes: a blank is one, too.
std::string RangesText(const Json& ranges) {
  std::string text;
  for (const Json& range : ranges) {
    text += (text.empty() ? "" : ", ") + JsonString(range.get_ref<const std::string&>());
  }
  return text.empty() ? "none" : text;
}

}  // namespace

Json AcceptedByRule(std::string_view rule) {
  constexpr int kText = 0;
  constexpr int kNumber = 1;
  const Fields fields(rule);
  switch (fields.Number(0, kText)) {
    case kText:
      return AcceptedText(fields);
    case kNumber:
      return AcceptedNumber(fields);
    default:
      return nullptr;
  }
}

std::string InWords(const Json& accepted) {
  if (accepted.contains("maxLength")) {
    std::string text = NumberText(accepted["minLength"]) + " to " +
                       NumberText(accepted["maxLength"]) +
                       (accepted["characters"] == "printable" ? " printable" : "") + " characters";
    if (accepted.contains("only")) {
      text += ", only " + RangesText(accepted["only"]);
    } else if (accepted.contains("not")) {
      text += ", not " + RangesText(accepted["not"]);
    }
    return text;
  }
  const bool has_minimum = accepted.contains("minimum");
  const bool has_maximum = accepted.contains("maximum");
  if (!has_minimum && !has_maximum) {
    return "anything";
  }
  return "a number" + (has_minimum ? " of at least " + NumberText(accepted["minimum"]) : "") +
         (has_minimum && has_maximum ? " and" : "") +
         (has_maximum ? " of at most " + NumberText(accepted["maximum"]) : "");
}

}  // namespace kiohost
