#include "store_api.h"

#include <kioapp/store.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fault_points.h"
#include "journal.h"
#include "node_path.h"

namespace {

// The library knows its store by five functions without a context argument.
kiohost::Store* g_store = nullptr;

// The path that a format and its arguments make. It is empty, and names no node, when it does not
// fit: a cut path could name another one.
KIOAPP_PRINTF(1, 0)
std::string FormatPath(const char* format, va_list arguments) {
  std::array<char, kiohost::kMaxPathLength + 2> path{};  // a '#' and the terminator
  const int length = std::vsnprintf(path.data(), path.size(), format, arguments);
  return length >= 0 && static_cast<size_t>(length) < path.size() ? path.data() : std::string();
}

// What a read finds when there are fault rules.
std::optional<std::string> ReadUnderFaults(kiohost::FaultPoints* faults, const std::string& path) {
  using Outcome = kiohost::FaultPoints::Read;
  const Outcome outcome = faults->OnRead(path, kiohost::NotesStore());
  if (outcome == Outcome::kFails) {
    g_store->Break();
  }
  return outcome == Outcome::kAsEver ? g_store->Get(path) : std::nullopt;
}

std::optional<std::string> Read(const std::string& path) {
  if (g_store == nullptr) {
    return std::nullopt;
  }
  kiohost::FaultPoints* const faults = kiohost::LibraryFaults();
  std::optional<std::string> text =
      faults == nullptr ? g_store->Get(path) : ReadUnderFaults(faults, path);
  if (kiohost::NotesStore()) {
    kiohost::TheJournal().AddRead(path, text);
  }
  return text;
}

// Changes a node; without a text it is deleted.
int Change(const std::string& path, const std::optional<std::string>& text) {
  if (g_store == nullptr) {
    return -1;
  }
  const bool notes = kiohost::NotesStore();
  const std::optional<std::string> before = notes ? g_store->Get(path) : std::nullopt;
  kiohost::FaultPoints* const faults = kiohost::LibraryFaults();
  const bool fails = faults != nullptr && notes && faults->OnWrite(path);
  if (fails) {
    g_store->Break();
  }
  const bool done = !fails && (text ? g_store->Set(path, *text) : g_store->Delete(path));
  if (notes) {
    kiohost::TheJournal().AddWrite(path, before, text, done);
  }
  return done ? 0 : -1;
}

int Write(const std::string& path, const std::string& text) { return Change(path, text); }

}  // namespace

extern "C" {

[[gnu::visibility("default")]] int xget_str(char* dst, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = FormatPath(format, arguments);
  va_end(arguments);
  const std::optional<std::string> text = Read(path);
  const size_t length = text ? std::min(text->size(), kiohost::Store::kMaxTextLength) : 0;
  if (length > 0) {
    std::memcpy(dst, text->data(), length);
  }
  dst[length] = '\0';
  return text ? 0 : -1;
}

[[gnu::visibility("default")]] int xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = FormatPath(format, arguments);
  va_end(arguments);
  return Write(path, value);
}

[[gnu::visibility("default")]] int xget_int(const char* format, ...) {
  constexpr int kDecimal = 10;
  va_list arguments;
  va_start(arguments, format);
  const std::string path = FormatPath(format, arguments);
  va_end(arguments);
  const std::optional<std::string> text = Read(path);
  return text ? static_cast<int>(std::strtol(text->c_str(), nullptr, kDecimal)) : -1;
}

[[gnu::visibility("default")]] int xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = FormatPath(format, arguments);
  va_end(arguments);
  return Write(path, std::to_string(value));
}

[[gnu::visibility("default")]] int xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = FormatPath(format, arguments);
  va_end(arguments);
  return Change(path, std::nullopt);
}

}  // extern "C"

namespace kiohost {

void BindStore(Store* store) { g_store = store; }

}  // namespace kiohost
