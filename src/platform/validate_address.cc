// Addresses and netmasks in dotted form.
#include <cstdint>

#include "kioapp/validate.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

// The four numbers of an address.
struct Quad {
  // A number that is missing in the text is in no range.
  int part[4] = {-1, -1, -1, -1};

  // Quirk "text-after-an-address": what follows the fourth number is ignored.
  explicit Quad(const char* text) {
    text = TextOf(text);
    for (int& number : part) {
      if (!kio::platform::ScanInt(&text, &number) || *text++ != '.') {
        return;
      }
    }
  }

  [[nodiscard]] std::uint32_t Bits() const {
    std::uint32_t bits = 0;
    for (const int number : part) {
      bits = bits << 8 | static_cast<std::uint8_t>(number);
    }
    return bits;
  }
};

constexpr int kByteMax = 255;

}  // namespace
}  // namespace kio::platform

using kio::platform::kByteMax;
using kio::platform::Quad;

int is_in_range(int value, int min, int max) { return min <= value && value <= max ? 1 : 0; }

int is_Valid_IP(const char* text) {
  constexpr int kLoopback = 127;
  constexpr int kLastUnicast = 223;
  const Quad quad(text);
  const bool valid = is_in_range(quad.part[0], 1, kLastUnicast) != 0 && quad.part[0] != kLoopback &&
                     is_in_range(quad.part[1], 0, kByteMax) != 0 &&
                     is_in_range(quad.part[2], 0, kByteMax) != 0 &&
                     is_in_range(quad.part[3], 1, kByteMax) != 0;
  return valid ? 1 : 0;
}

int is_Valid_Netmask(const char* text) {
  const Quad quad(text);
  for (const int number : quad.part) {
    if (is_in_range(number, 0, kByteMax) == 0) {
      return 0;
    }
  }
  // Ones, then zeros: the inverted mask is one less than a power of two.
  const std::uint32_t host_bits = ~quad.Bits();
  return (host_bits & (host_bits + 1)) == 0 ? 1 : 0;
}

int is_Valid_IP_CheckMask(const char* mask, const char* a, const char* b) {
  if (is_Valid_IP(a) == 0 || is_Valid_IP(b) == 0 || is_Valid_Netmask(mask) == 0) {
    return 0;
  }
  return ((Quad(a).Bits() ^ Quad(b).Bits()) & Quad(mask).Bits()) == 0 ? 1 : 0;
}
