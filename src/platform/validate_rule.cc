// Checking values by rules from the store.
#include <cstdlib>

#include "kioapp/settings.h"
#include "kioapp/validate.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

// A rule cut into its fields.
class Rule {
 public:
  explicit Rule(const char* text) {
    const char* const end = text_ + sizeof(text_) - 1;
    char* out = text_;
    fields_[0] = out;
    count_ = 1;
    for (; *text != '\0' && out < end; ++text) {
      if (*text == ',') {
        *out++ = '\0';
        // Quirk "rule-of-32-fields": what follows is not looked at.
        if (count_ == kMaxFields) {
          break;
        }
        fields_[count_++] = out;
        continue;
      }
      if (*text == '\\' && (text[1] == ',' || text[1] == '\\')) {
        ++text;
      }
      *out++ = *text;
    }
    *out = '\0';
  }
  Rule(const Rule&) = delete;
  Rule& operator=(const Rule&) = delete;

  [[nodiscard]] int count() const { return count_; }
  [[nodiscard]] const char* Field(int index) const { return fields_[index]; }
  // The number in a field; `absent` when the rule has no such field.
  [[nodiscard]] int Int(int index, int absent) const {
    return index < count_ ? ParseInt(fields_[index]) : absent;
  }
  [[nodiscard]] float Float(int index, float absent) const {
    return index < count_ ? ParseFloat(fields_[index]) : absent;
  }
  // Quirk "single-precision": bounds and values are rounded to it.
  static float ParseFloat(const char* text) {
    return static_cast<float>(std::strtod(text, nullptr));
  }

 private:
  static constexpr int kMaxFields = 32;

  int count_;
  const char* fields_[kMaxFields];
  // The store holds rules of at most 127 characters; a longer one is cut here.
  char text_[512];
};

enum RuleField : int {
  kKind = 0,
  kMaximum = 1,
  kMinimum = 2,
  kAnyCharacter = 3,
  kAllowList = 4,
  kFirstRange = 5
};
enum RuleKind : int { kTextRule = 0, kNumberRule = 1 };

int CheckNumber(const char* value, const Rule& rule) {
  constexpr float kUnlimited = 1e38F;
  const float maximum = rule.Float(kMaximum, kUnlimited);
  const float minimum = rule.Float(kMinimum, -kUnlimited);
  const float number = Rule::ParseFloat(value);
  // Quirk "unordered-numbers-pass": written so that NaN is within every bound.
  if (number > maximum) {
    return KIOAPP_RESULT_ABOVE_MAXIMUM;
  }
  return number < minimum ? KIOAPP_RESULT_BELOW_MINIMUM : KIOAPP_RESULT_APPLIED;
}

// Whether a field "c" or "c-d" covers the character.
bool IsInRange(char character, const char* range) {
  // Quirk "ranges-are-signed": whatever char is.
  const auto subject = static_cast<signed char>(character);
  const auto first = static_cast<signed char>(range[0]);
  if (first == '\0') {
    return false;
  }
  // Quirk "open-range-matches-nothing": without an end it ends at the terminator.
  const auto last = range[1] == '-' ? static_cast<signed char>(range[2]) : first;
  return first <= subject && subject <= last;
}

bool IsInAnyRange(char character, const Rule& rule) {
  for (int i = kFirstRange; i < rule.count(); ++i) {
    if (IsInRange(character, rule.Field(i))) {
      return true;
    }
  }
  return false;
}

int CheckText(const char* value, const Rule& rule) {
  constexpr int kDefaultMaximum = 9999;
  const std::size_t size = std::strlen(value);
  const int length = size < INT_MAX ? static_cast<int>(size) : INT_MAX;
  if (length > rule.Int(kMaximum, kDefaultMaximum) || length < rule.Int(kMinimum, 1)) {
    return KIOAPP_RESULT_BAD_LENGTH;
  }
  const bool any_character = rule.Int(kAnyCharacter, 0) != 0;
  const bool allow_list = rule.Int(kAllowList, 0) != 0;
  for (; *value != '\0'; ++value) {
    const bool printable = *value >= ' ' && *value <= '~';
    if ((!any_character && !printable) || IsInAnyRange(*value, rule) != allow_list) {
      return KIOAPP_RESULT_BAD_CHARACTER;
    }
  }
  return KIOAPP_RESULT_APPLIED;
}

int CheckValue(const char* value, const Rule& rule) {
  // Quirk "empty-rule-is-a-text-rule": an empty kind is 0, and so a text must not be empty.
  switch (rule.Int(kKind, kTextRule)) {
    case kTextRule:
      return CheckText(value, rule);
    case kNumberRule:
      return CheckNumber(value, rule);
    // Quirk "other-kinds-pass": whatever the value is.
    default:
      return KIOAPP_RESULT_APPLIED;
  }
}

}  // namespace
}  // namespace kio::platform

int validate_RssData(const char* value, const char* rule) {
  if (value == nullptr || (rule == nullptr && value[0] == '\0')) {
    return KIOAPP_RESULT_INVALID_VALUE;
  }
  if (rule == nullptr) {
    return KIOAPP_RESULT_APPLIED;
  }
  return kio::platform::CheckValue(value, kio::platform::Rule(rule));
}
