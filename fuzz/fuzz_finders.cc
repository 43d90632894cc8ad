// The finders: they stay inside the text, leave it as it was and find what a plain search finds.
// The input is a line with the key, a line with the length, and the text.
#include <cstring>

#include "input.h"
#include "kioapp/kioapp.h"
#include "testing/plain_toolkit.h"

namespace {

using kio::test::kPlainToolkit;

void CheckFind(const kio::fuzz::GuardedText& text, const kio::fuzz::GuardedText& copy, int length,
               const char* key) {
  int found_length = 0;
  int expected_length = 0;
  const char* const found = FindXmlKeyContain(text.get(), length, key, &found_length);
  const char* const expected = kPlainToolkit.find(copy.get(), length, key, &expected_length);
  if ((found == nullptr) != (expected == nullptr) || found_length != expected_length ||
      (found != nullptr && found - text.get() != expected - copy.get())) {
    kio::fuzz::Report("FindXmlKeyContain finds something else");
  }
  const char* const header = SearchXmlKeyHeader(text.get(), length, key);
  const char* const expected_header = kPlainToolkit.find_header(copy.get(), length, key);
  if ((header == nullptr) != (expected_header == nullptr) ||
      (header != nullptr && header - text.get() != expected_header - copy.get())) {
    kio::fuzz::Report("SearchXmlKeyHeader finds something else");
  }
}

void CheckStrstri(const char* text, const char* key) {
  if (strstri(text, key) != kPlainToolkit.strstri(text, key)) {
    kio::fuzz::Report("strstri finds something else");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const kio::fuzz::GuardedText key(input.Line());
  const int length = input.Number();
  const std::string rest = input.Rest();
  const kio::fuzz::GuardedText text(rest);
  const kio::fuzz::GuardedText copy(rest);
  CheckFind(text, copy, length, key.get());
  CheckStrstri(text.get(), key.get());

  char path[128] = "";
  int block_length = 0;
  prepareXmlBlockData("Device", text.get(), length, key.get(), path, &block_length);
  if (strnlen(path, sizeof(path)) == sizeof(path)) {
    kio::fuzz::Report("a path has no terminator");
  }
  const int capacity = 1 + length % 40 * (length > 0 ? 1 : 0);
  const kio::fuzz::GuardedBuffer value(static_cast<std::size_t>(capacity));
  GetXmlKeyStrValue(text.get(), length, "Device", key.get(), value.get(), capacity);
  if (strnlen(value.get(), static_cast<std::size_t>(capacity)) ==
      static_cast<std::size_t>(capacity)) {
    kio::fuzz::Report("a value has no terminator");
  }
  int number = 0;
  GetXmlKeyIntValue(text.get(), length, nullptr, key.get(), &number);
  if (rest != text.get()) {
    kio::fuzz::Report("the text has changed");
  }
  return 0;
}
