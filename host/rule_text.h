// What the rules of the store accept, for programs and in words.
#ifndef HOST_RULE_TEXT_H
#define HOST_RULE_TEXT_H

#include <string>
#include <string_view>

#include "json.h"

namespace kiohost {

// What a rule (kioapp/validate.h) accepts: `minLength`, `maxLength`, `characters`, `only` and `not`
// of a text, `minimum` and `maximum` of a number; null for anything.
Json AcceptedByRule(std::string_view rule);

// The same in words: "1 to 32 printable characters".
std::string InWords(const Json& accepted);

}  // namespace kiohost

#endif  // HOST_RULE_TEXT_H
