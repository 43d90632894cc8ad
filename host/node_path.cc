#include "node_path.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "text.h"

namespace kiohost {
namespace {

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '.' || c == '_' ||
         c == '-';
}

bool IsInstanceNumber(std::string_view text) {
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsDigit) || text[0] == '0') {
    return false;
  }
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && number <= kMaxInstance;
}

bool IsName(std::string_view name) {
  const size_t colon = name.find(':');
  if (colon != std::string_view::npos) {
    if (!IsInstanceNumber(name.substr(colon + 1))) {
      return false;
    }
    name = name.substr(0, colon);
  }
  return !name.empty() && std::all_of(name.begin(), name.end(), IsNameCharacter);
}

}  // namespace

bool IsNodePath(std::string_view path) {
  if (path.empty() || path.size() > kMaxPathLength || path[0] != '/') {
    return false;
  }
  while (!path.empty()) {
    path.remove_prefix(1);
    const std::string_view name = path.substr(0, path.find('/'));
    if (!IsName(name)) {
      return false;
    }
    path.remove_prefix(name.size());
  }
  return true;
}

bool IsCountPath(std::string_view path) {
  if (path.empty() || path.back() != '#') {
    return false;
  }
  path.remove_suffix(1);
  return IsNodePath(path) && path.find(':', path.rfind('/')) == std::string_view::npos;
}

}  // namespace kiohost
