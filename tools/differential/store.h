// The host of the scenarios: the store in memory, whose calls become events.
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
  // From here on each call becomes an event. A read of an absent node leaves the caller's buffer as
  // it is, or empties it. `result` is what the functions but xget_int return; the library must not
  // depend on it.
  static void Begin(bool absent_leaves_buffer, int result);

  static void Clear();
  static void Set(std::string_view path, std::string_view text);
  // The text of a node; null when it is absent. That of a path that ends in '#' is the number of
  // instances.
  [[nodiscard]] static std::optional<std::string> Text(std::string_view path);
  static void Delete(std::string_view path);
  [[nodiscard]] static std::map<std::string, std::string> Nodes();
};

}  // namespace kio::differential

#endif
