// Whether a request head says beyond doubt where its body ends and whom it is meant for. Two
// programs that read a doubtful one differently can be played off against each other.
#ifndef HOST_FRAMING_H
#define HOST_FRAMING_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kiohost {

using HeaderLines = std::vector<std::pair<std::string_view, std::string_view>>;

// What is wrong with a head of that version ("HTTP/1.1"); nothing when it is good.
std::optional<std::string> FramingFault(std::string_view version, const HeaderLines& headers);

}  // namespace kiohost

#endif  // HOST_FRAMING_H
