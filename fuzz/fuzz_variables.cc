// A variable. The input is lines that begin with '/' for nodes of the store, and a line each with a
// mode (in decimal), a name and a value.
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"

namespace {

// The value in the shortest buffer that a caller may give for it.
std::vector<char> ValueBuffer(const std::string& text) {
  std::vector<char> buffer(std::max<std::size_t>(KIOAPP_VAR_SIZE, text.size() + 1));
  buffer.shrink_to_fit();
  std::memcpy(buffer.data(), text.data(), text.size());
  return buffer;
}

void CheckBuffer(const std::vector<char>& buffer) {
  if (std::memchr(buffer.data(), '\0', buffer.size()) == nullptr) {
    kio::fuzz::Report("a value has lost its terminator");
  }
}

// A conversion gives a name with its prefix, or a path with its first slash.
void CheckConversion(const char* text) {
  const char* const name = cvtRss_XmlPathVsVarName(text, 0);
  if (name != nullptr && std::strncmp(name, "rss_", 4) != 0) {
    kio::fuzz::Report("a path gives a name without the prefix");
  }
  const char* const path = cvtRss_XmlPathVsVarName(text, 1);
  if (path != nullptr && path[0] != '/') {
    kio::fuzz::Report("a name gives no path");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  kio::fuzz::ResetDevice(size);
  kio::fuzz::ChangeNodes(&input);
  const int mode = input.Number();
  const kio::fuzz::GuardedText name(input.Line());
  const std::string value = input.Line();
  kio::fuzz::StartVariables();
  CheckConversion(name.get());

  std::vector<char> buffer = ValueBuffer(value);
  setget_RssVar(name.get(), buffer.data(), mode);
  CheckBuffer(buffer);
  const kio::fuzz::GuardedText pair(std::string(name.get()) + '=' + value);
  validate_RssVar2(pair.get());
  getRssVar(name.get());

  alarm(0);
  kio::fuzz::CheckRecord();
  return 0;
}
