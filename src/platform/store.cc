#include "platform/store.h"

#include <unistd.h>

#include <cstdlib>

#include "kioapp/store.h"
#include "platform/wipe.h"

namespace kio::platform {
namespace {

// Returning would go through frames that are broken. The log needs the store; the path may be gone,
// and what was written may be a secret, so neither is told.
[[noreturn, gnu::cold]] void StopForBrokenStack() {
  constexpr TextView kMessage =
      "libkioapp: xget_str wrote more than the 4096 bytes that kioapp/store.h allows: stopped\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  std::abort();
}

}  // namespace

StoreText::StoreText(const char* path) {
  text_[0] = '\0';
  xget_str(text_, "%s", path);
  if (behind_ != kUntouched) {
    StopForBrokenStack();
  }
  text_[kScratchSize - 1] = '\0';
}

void StoreText::Clear() { Wipe(text_, std::strlen(text_)); }

void ReadStoreText(const char* path, char* field, std::size_t size) {
  CopyText(field, size, StoreText(path).view());
}

void ReadStoreSecret(const char* path, char* field, std::size_t size) {
  StoreText text(path);
  CopyText(field, size, text.view());
  text.Clear();
}

int ReadStoreInt(const char* path) { return xget_int("%s", path); }

void WriteStoreText(const char* path, const char* value) { xset_str(value, "%s", path); }

void WriteStoreInt(const char* path, int value) { xset_int(value, "%s", path); }

void DeleteStoreNode(const char* path) { xdel("%s", path); }

}  // namespace kio::platform
