#include "store.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kioapp/store.h"
#include "transcript.h"

namespace kio::differential {
namespace {

// More than this, a host must not give.
constexpr std::size_t kLongestText = 4095;

std::string Folded(std::string_view path) {
  std::string folded(path);
  for (char& character : folded) {
    if (character >= 'A' && character <= 'Z') {
      character = static_cast<char>(character - 'A' + 'a');
    }
  }
  return folded;
}

int ToInt(const char* text) { return static_cast<int>(std::strtol(text, nullptr, 10)); }

KIOAPP_PRINTF(1, 0) std::string Format(const char* format, va_list arguments) {
  char text[4096];
  std::vsnprintf(text, sizeof(text), format, arguments);
  return text;
}

// Whether the node is `path` itself or lies below it.
bool IsWithin(std::string_view node, std::string_view path) {
  return node.starts_with(path) && (node.size() == path.size() || node[path.size()] == '/');
}

}  // namespace

Store& Store::Get() {
  static Store store;
  return store;
}

void Store::Set(std::string_view path, std::string_view text) {
  nodes_[Folded(path)] = text.substr(0, kLongestText);
}

std::optional<std::string> Store::Text(std::string_view path) const {
  const std::string folded = Folded(path);
  if (const auto node = nodes_.find(folded); node != nodes_.end()) {
    return node->second;
  }
  if (folded.empty() || folded.back() != '#') {
    return std::nullopt;
  }
  const std::string stem = folded.substr(0, folded.size() - 1) + ":";
  int highest = 0;
  for (auto node = nodes_.lower_bound(stem); node != nodes_.end() && node->first.starts_with(stem);
       ++node) {
    highest = std::max(highest, ToInt(node->first.c_str() + stem.size()));
  }
  return highest > 0 ? std::optional(std::to_string(highest)) : std::nullopt;
}

void Store::Delete(std::string_view path) {
  const std::string folded = Folded(path);
  auto node = nodes_.lower_bound(folded);
  while (node != nodes_.end() && node->first.starts_with(folded)) {
    node = IsWithin(node->first, folded) ? nodes_.erase(node) : std::next(node);
  }
}

}  // namespace kio::differential

using kio::differential::Event;
using kio::differential::Format;
using kio::differential::Store;
using kio::differential::ToInt;

extern "C" {

int xget_str(char* dst, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = Format(format, arguments);
  va_end(arguments);
  // The library gives an empty buffer, whatever this function does with it.
  Event("xget_str", {path, dst[0] == '\0' ? "" : "into a text"});
  const Store& store = Store::Get();
  if (const auto text = store.Text(path)) {
    std::memcpy(dst, text->c_str(), text->size() + 1);
  } else if (!store.absent_leaves_buffer) {
    dst[0] = '\0';
  }
  return store.result;
}

int xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = Format(format, arguments);
  va_end(arguments);
  Event("xset_str", {path, value});
  Store::Get().Set(path, value);
  return Store::Get().result;
}

int xget_int(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = Format(format, arguments);
  va_end(arguments);
  Event("xget_int", {path});
  const auto text = Store::Get().Text(path);
  return text.has_value() ? ToInt(text->c_str()) : -1;
}

int xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = Format(format, arguments);
  va_end(arguments);
  Event("xset_int", {path, value});
  Store::Get().Set(path, std::to_string(value));
  return Store::Get().result;
}

int xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = Format(format, arguments);
  va_end(arguments);
  Event("xdel", {path});
  Store::Get().Delete(path);
  return Store::Get().result;
}

}  // extern "C"
