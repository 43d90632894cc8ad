// Whether it is clear from the head of a request where its body ends and which host it is meant
// for. If it is not, two programs may read it differently, which an attacker can use.
#ifndef HOST_FRAMING_H
#define HOST_FRAMING_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kiohost {

using HeaderLines = std::vector<std::pair<std::string_view, std::string_view>>;

// What is wrong with a head of that HTTP version ("HTTP/1.1"); nothing when it is good.
std::optional<std::string> FramingFault(std::string_view version, const HeaderLines& headers);

}  // namespace kiohost

#endif  // HOST_FRAMING_H
