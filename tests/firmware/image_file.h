// Firmware images made by the tests.
#ifndef KIO_TESTS_FIRMWARE_IMAGE_FILE_H
#define KIO_TESTS_FIRMWARE_IMAGE_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace kio::test {

// CRC-32 by the bit: the definition.
std::uint32_t PlainCrc32(const std::string& data);

// Some bytes, the same for the same number.
std::string SomeBytes(std::size_t size, unsigned int number = 1);

// A big-endian number of four bytes.
std::string BigEndian(std::uint32_t number);

// An image of a 64-byte header and `data`.
std::string MakeImage(const std::string& data);

void WriteFile(const std::string& path, const std::string& contents);

}  // namespace kio::test

#endif
