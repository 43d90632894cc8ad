// Whether the library could use what a profile or a store says.
#ifndef HOST_NODE_CHECK_H
#define HOST_NODE_CHECK_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "store.h"

namespace kiohost {

// The text of another node; nothing for an absent one.
using NodeTexts = std::function<std::optional<std::string>(std::string_view path)>;

// What is wrong with a node: the library has none of that name, or could not use its text. An empty
// text when nothing is. A secret is not told.
std::string NodeFault(const Node& node, const NodeTexts& others);

}  // namespace kiohost

#endif  // HOST_NODE_CHECK_H
