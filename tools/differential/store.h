// The host's part of the scenarios: a configuration store in memory that tells each call.
#ifndef KIO_DIFFERENTIAL_STORE_H
#define KIO_DIFFERENTIAL_STORE_H

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kio::differential {

class Store {
 public:
  // The store that the library's calls reach.
  static Store& Get();

  void Clear() { nodes_.clear(); }
  void Set(std::string_view path, std::string_view text);
  // The text of a node; none when it is absent. A path that ends in '#' counts instances.
  [[nodiscard]] std::optional<std::string> Text(std::string_view path) const;
  void Delete(std::string_view path);

  // Whether reading an absent node leaves the caller's buffer as it is, or empties it.
  bool absent_leaves_buffer = false;
  // What the reading and writing functions return; the library must not care.
  int result = 0;

  [[nodiscard]] const std::map<std::string, std::string, std::less<>>& nodes() const {
    return nodes_;
  }

 private:
  std::map<std::string, std::string, std::less<>> nodes_;
};

}  // namespace kio::differential

#endif
