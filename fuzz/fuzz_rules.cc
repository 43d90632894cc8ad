// A value checked by a rule, and compared with a pattern, as plain models do. The input is a line
// with the value, and the rule.
#include "input.h"
#include "kioapp/kioapp.h"
#include "testing/plain_texts.h"
#include "testing/plain_validators.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const std::string value = input.Line();
  // The store holds shorter ones; of a longer one the library reads so much.
  const std::string rule = input.Rest().substr(0, 511);
  const kio::fuzz::GuardedText value_text(value);
  const kio::fuzz::GuardedText rule_text(rule);
  if (validate_RssData(value_text.get(), rule_text.get()) !=
      kio::test::PlainValidate(value, rule)) {
    kio::fuzz::Report("a value is judged otherwise");
  }
  const int without_rule = value.empty() ? KIOAPP_RESULT_INVALID_VALUE : KIOAPP_RESULT_APPLIED;
  if (validate_RssData(value_text.get(), nullptr) != without_rule) {
    kio::fuzz::Report("a value without a rule is judged otherwise");
  }
  for (const int n : {-1, 0, 1, 8}) {
    if (strnWildcardCmp(value_text.get(), rule_text.get(), n) !=
        kio::test::PlainWildcardCmp(value, rule, n)) {
      kio::fuzz::Report("a text compares otherwise with the beginning of a pattern");
    }
  }
  constexpr int kWhole = 32767;
  if (strWildcardCmp(value_text.get(), rule_text.get()) !=
      kio::test::PlainWildcardCmp(value, rule, kWhole)) {
    kio::fuzz::Report("a text compares otherwise with a pattern");
  }
  return 0;
}
