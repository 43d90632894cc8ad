#include "control/log_tail.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace kiohost {
namespace {

uint64_t SizeOf(const std::string& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : size;
}

}  // namespace

LogTail::LogTail(std::string file) : file_(std::move(file)), place_(SizeOf(file_)) {}

void LogTail::ReadNew(const std::function<void(const std::string& line)>& take) {
  const uint64_t size = SizeOf(file_);
  if (size == place_) {
    return;
  }
  if (size < place_) {
    place_ = 0;
  }
  std::ifstream stream(file_, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(place_));
  for (std::string line; std::getline(stream, line) && !stream.eof();) {
    place_ += line.size() + 1;
    take(line);
  }
}

}  // namespace kiohost
