// A value checked by a rule. The input is a line with the value, and the rule. The other validators
// check the value too.
#include "input.h"
#include "kioapp/kioapp.h"

namespace {

void CheckFlag(int flag) {
  if (flag != 0 && flag != 1) {
    kio::fuzz::Report("a validator returns neither 0 nor 1");
  }
}

bool IsKnown(int code) {
  switch (code) {
    case KIOAPP_RESULT_APPLIED:
    case KIOAPP_RESULT_INVALID_VALUE:
    case KIOAPP_RESULT_BAD_LENGTH:
    case KIOAPP_RESULT_BAD_CHARACTER:
    case KIOAPP_RESULT_ABOVE_MAXIMUM:
    case KIOAPP_RESULT_BELOW_MINIMUM:
      return true;
    default:
      return false;
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const kio::fuzz::GuardedText value(input.Line());
  const kio::fuzz::GuardedText rule(input.Rest());
  if (!IsKnown(validate_RssData(value.get(), rule.get())) ||
      !IsKnown(validate_RssData(value.get(), nullptr))) {
    kio::fuzz::Report("a rule gives an unknown code");
  }
  CheckFlag(is_Valid_IP(value.get()));
  CheckFlag(is_Valid_Netmask(value.get()));
  CheckFlag(is_Valid_IP_CheckMask(rule.get(), value.get(), value.get()));
  CheckFlag(is_Valid_WpaPskKey(value.get()));
  CheckFlag(is_Valid_WepKey(value.get(), 5));
  CheckFlag(is_Valid_WepKey(value.get(), 13));
  strWildcardCmp(value.get(), rule.get());
  strnWildcardCmp(value.get(), rule.get(), 8);
  return 0;
}
