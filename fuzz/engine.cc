// What libFuzzer asks how to change an input.
#include <algorithm>
#include <cstdint>
#include <string>

#include "mutator.h"

extern "C" {

std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

// The names are those that libFuzzer looks for.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t max_size,
                                    unsigned int seed);
std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                      const std::uint8_t* other, std::size_t other_size,
                                      std::uint8_t* out, std::size_t max_size, unsigned int seed);
}

namespace {

std::string TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

std::size_t Put(const std::string& text, std::uint8_t* out, std::size_t max_size) {
  const std::size_t size = std::min(text.size(), max_size);
  std::copy_n(text.data(), size, out);
  return size;
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t max_size,
                                    unsigned int seed) {
  kio::fuzz::Random random(seed);
  if (kio::fuzz::Draw(random, 2) == 0) {
    return LLVMFuzzerMutate(data, size, max_size);
  }
  std::string text = TextOf(data, size);
  const std::string before = text;
  for (std::size_t changes = kio::fuzz::Draw(random, 3) + 1; changes > 0; --changes) {
    kio::fuzz::MutateStructure(text, before, random);
  }
  return Put(text, data, max_size);
}

std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                      const std::uint8_t* other, std::size_t other_size,
                                      std::uint8_t* out, std::size_t max_size, unsigned int seed) {
  kio::fuzz::Random random(seed);
  std::string text = TextOf(data, size);
  kio::fuzz::MutateStructure(text, TextOf(other, other_size), random);
  return Put(text, out, max_size);
}
