#include "settings/xml/equals_fold.h"

#include "platform/text.h"

namespace kio::settings {
namespace {

using platform::ToLower;

using EightCharacters = std::uint64_t;
constexpr EightCharacters kCaseBit = 0x20;  // tells the cases of a letter apart
constexpr EightCharacters kEach = static_cast<EightCharacters>(-1) / 0xFF;

template <typename Word>
Word Load(const char* text) {
  Word word = 0;
  std::memcpy(&word, text, sizeof(word));
  return word;
}

// The first and the last half, which may overlap, of as many characters as `Half` holds, or more.
template <typename Half>
EightCharacters LoadEnds(const char* text, std::size_t size) {
  const EightCharacters last = Load<Half>(text + size - sizeof(Half));
  return last << 32 | Load<Half>(text);
}

bool EqualsFoldWord(EightCharacters a, EightCharacters b) {
  constexpr EightCharacters kTops = kEach * 0x80;
  const EightCharacters differences = a ^ b;
  // The top bit of each byte tells of its character, of which the case is left out.
  const EightCharacters folded = (a | kEach * kCaseBit) & ~kTops;
  const EightCharacters from_a = folded + kEach * (0x80 - 'a');
  const EightCharacters behind_z = folded + kEach * (0x7F - 'z');
  const EightCharacters letters = from_a & ~behind_z & ~a & kTops;
  // Only letters may differ, and only in their case.
  return (differences & ~(letters / (0x80 / kCaseBit))) == 0;
}

}  // namespace

bool EqualsFoldInside(const char* a, const char* b, std::size_t size) {
  constexpr std::size_t kWord = sizeof(EightCharacters);
  if (size < sizeof(std::uint16_t)) {
    return size == 0 || ToLower(*a) == ToLower(*b);
  }
  if (size < sizeof(std::uint32_t)) {
    return EqualsFoldWord(LoadEnds<std::uint16_t>(a, size), LoadEnds<std::uint16_t>(b, size));
  }
  if (size < kWord) {
    return EqualsFoldWord(LoadEnds<std::uint32_t>(a, size), LoadEnds<std::uint32_t>(b, size));
  }
  std::size_t i = 0;
  while (size - i > kWord) {
    if (!EqualsFoldWord(Load<EightCharacters>(a + i), Load<EightCharacters>(b + i))) {
      return false;
    }
    i += kWord;
  }
  // The last word may overlap the one before.
  i = size - kWord;
  return EqualsFoldWord(Load<EightCharacters>(a + i), Load<EightCharacters>(b + i));
}

}  // namespace kio::settings
