// The coders. The input is a line with the limit, and the text.
#include <algorithm>
#include <cstring>
#include <vector>

#include "input.h"
#include "kioapp/kioapp.h"

namespace {

using Coder = char* (*)(char* dst, const char* src, int n);

// Ends the program when a coder writes further than its limit allows: the guard stands `beyond`
// bytes behind that.
void RunCoder(Coder coder, const char* source, int limit, int beyond) {
  const auto room = static_cast<std::size_t>(std::max(limit, 1) + beyond);
  const kio::fuzz::GuardedBuffer dst(room);
  if (coder(dst.get(), source, limit) != dst.get()) {
    kio::fuzz::Report("a coder returns something else than its buffer");
  }
}

// A text that was encoded without a cut decodes to itself.
void CheckRoundTrip(Coder encode, Coder decode, const std::string& text) {
  const std::size_t room = text.size() * 6 + 2;
  const kio::fuzz::GuardedBuffer encoded(room);
  const kio::fuzz::GuardedBuffer decoded(room);
  encode(encoded.get(), text.c_str(), static_cast<int>(room - 1));
  decode(decoded.get(), encoded.get(), static_cast<int>(room - 1));
  if (text != decoded.get()) {
    kio::fuzz::Report("a text does not survive encoding and decoding");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kLongest = 4096;
  kio::fuzz::Input input(data, size);
  const int limit = std::clamp(input.Number(), -2, kLongest);
  const std::string text = input.Rest().substr(0, kLongest);
  const kio::fuzz::GuardedText source(text);
  RunCoder(strncpy_XmlDecode, source.get(), limit, 0);
  RunCoder(strncpy_XmlEncode, source.get(), limit, 0);
  RunCoder(strncpy_HtmlDecode, source.get(), limit, 0);
  // An escape that begins with one character left takes one more than the limit.
  RunCoder(strncpy_HtmlEncode, source.get(), limit, 1);
  CheckRoundTrip(strncpy_XmlEncode, strncpy_XmlDecode, text);
  CheckRoundTrip(strncpy_HtmlEncode, strncpy_HtmlDecode, text);
  return 0;
}
