// The host's part of the scenarios: the store in memory, which tells each call.
#ifndef KIO_DIFFERENTIAL_STORE_H
#define KIO_DIFFERENTIAL_STORE_H

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kio::differential {

// The store that the library's calls reach.
class Store {
 public:
  // From here on it tells each call. Reading an absent node leaves the caller's buffer as it is, or
  // empties it. `result` is what the reading and writing functions return; the library must not
  // care.
  static void Begin(bool absent_leaves_buffer, int result);

  static void Clear();
  static void Set(std::string_view path, std::string_view text);
  // The text of a node; none when it is absent. A path that ends in '#' counts instances.
  [[nodiscard]] static std::optional<std::string> Text(std::string_view path);
  static void Delete(std::string_view path);
  [[nodiscard]] static std::map<std::string, std::string> Nodes();
};

}  // namespace kio::differential

#endif
