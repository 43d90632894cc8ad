#include "image_file.h"

#include <fstream>
#include <random>

namespace kio::test {

std::uint32_t PlainCrc32(const std::string& data) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char character : data) {
    crc ^= static_cast<unsigned char>(character);
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xEDB88320 : crc >> 1;
    }
  }
  return ~crc;
}

std::string SomeBytes(std::size_t size, unsigned int number) {
  std::mt19937 random(number);
  std::string bytes(size, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  return bytes;
}

std::string BigEndian(std::uint32_t number) {
  return {static_cast<char>(number >> 24), static_cast<char>(number >> 16),
          static_cast<char>(number >> 8), static_cast<char>(number)};
}

std::string MakeImage(const std::string& data) {
  std::string header = BigEndian(0x27051956) + BigEndian(0) + BigEndian(0x5F000000) +
                       BigEndian(static_cast<std::uint32_t>(data.size())) + BigEndian(0x80000000) +
                       BigEndian(0x80000400) + BigEndian(PlainCrc32(data)) +
                       std::string("\5\5\2\1") + "AB12_FW1.0.8";
  header.resize(64, '\0');
  header.replace(4, 4, BigEndian(PlainCrc32(header)));
  return header + data;
}

void WriteFile(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary) << contents;
}

}  // namespace kio::test
