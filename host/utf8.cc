#include "utf8.h"

#include <cstdint>

namespace kiohost {
namespace {

struct Lead {
  unsigned char mask;
  unsigned char bits;
  size_t length;
  uint32_t smallest;  // of this form; a smaller code point must use a shorter one
};

constexpr Lead kLeads[] = {{0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

bool IsCodePoint(uint32_t value) {
  constexpr uint32_t kLastCodePoint = 0x10FFFF;
  constexpr uint32_t kFirstSurrogate = 0xD800;
  constexpr uint32_t kLastSurrogate = 0xDFFF;
  return value <= kLastCodePoint && (value < kFirstSurrogate || value > kLastSurrogate);
}

}  // namespace

size_t MultiByteLength(std::string_view text) {
  constexpr unsigned char kTailMask = 0xC0;
  constexpr unsigned char kTailBits = 0x80;
  constexpr int kTailShift = 6;
  const auto first = static_cast<unsigned char>(text[0]);
  for (const Lead& lead : kLeads) {
    if ((first & lead.mask) != lead.bits || text.size() < lead.length) {
      continue;
    }
    uint32_t value = static_cast<unsigned char>(first & ~lead.mask);
    for (size_t i = 1; i < lead.length; ++i) {
      const auto tail = static_cast<unsigned char>(text[i]);
      if ((tail & kTailMask) != kTailBits) {
        return 0;
      }
      value = (value << kTailShift) | static_cast<unsigned char>(tail & ~kTailMask);
    }
    return value >= lead.smallest && IsCodePoint(value) ? lead.length : 0;
  }
  return 0;
}

bool IsUtf8(std::string_view text) {
  constexpr unsigned char kFirstMultiByte = 0x80;
  while (!text.empty()) {
    const bool is_single = static_cast<unsigned char>(text.front()) < kFirstMultiByte;
    const size_t length = is_single ? 1 : MultiByteLength(text);
    if (length == 0) {
      return false;
    }
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace kiohost
