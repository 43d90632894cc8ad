// The target of a request line.
#ifndef HOST_REQUEST_TARGET_H
#define HOST_REQUEST_TARGET_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kiohost {

struct RequestTarget {
  static constexpr size_t kMostArguments = 64;

  std::string path;          // percent-decoded, without the query, up to a NUL byte
  bool nul_in_path = false;  // as %00
  bool is_server = false;    // the server as a whole: "*", or a host without a path
  // Host and port of a target in absolute form ("http://router:80/device").
  std::optional<std::string> authority;
  // The parameters of the query, decoded; a parameter without a value has an empty one.
  std::vector<std::pair<std::string, std::string>> arguments;
  bool too_many_arguments = false;
};

// Takes a target apart. Arguments beyond kMostArguments are dropped.
RequestTarget ParseTarget(std::string_view target);

}  // namespace kiohost

#endif  // HOST_REQUEST_TARGET_H
