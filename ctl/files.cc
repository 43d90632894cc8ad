#include "files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "failure.h"

namespace kioctl {
namespace {

Failure CannotWrite(const std::string& file) {
  return {ExitCode::kLocal, "cannot write " + file + ": " + std::strerror(errno),
          "name a file in a directory that you may write to, on a disk with room"};
}

bool WriteAll(int file, const std::string& content) {
  for (size_t done = 0; done < content.size();) {
    const ssize_t written = write(file, content.data() + done, content.size() - done);
    if (written < 0 && errno != EINTR) {
      return false;
    }
    done += written > 0 ? static_cast<size_t>(written) : 0;
  }
  return true;
}

}  // namespace

std::string ReadInput(const std::string& file) {
  std::ostringstream text;
  if (file == "-") {
    text << std::cin.rdbuf();
    return text.str();
  }
  std::ifstream stream(file, std::ios::binary);
  if (stream && stream.peek() != std::ifstream::traits_type::eof()) {
    text << stream.rdbuf();
  }
  // A directory opens, and fails when it is read.
  if (stream.bad() || (stream.fail() && !stream.eof())) {
    throw Failure{ExitCode::kLocal, "cannot read " + file + ": " + std::strerror(errno),
                  "name a file that is there, or - for standard input"};
  }
  return text.str();
}

void WriteOutput(const std::string& file, const std::string& content) {
  if (file == "-") {
    if (!WriteAll(STDOUT_FILENO, content)) {
      throw CannotWrite("the output");
    }
    return;
  }
  std::string part = file + ".XXXXXX";
  const int handle = mkstemp(part.data());  // for the user alone
  if (handle < 0) {
    throw CannotWrite(file);
  }
  const bool is_whole = WriteAll(handle, content) && fsync(handle) == 0;
  if (close(handle) != 0 || !is_whole || std::rename(part.c_str(), file.c_str()) != 0) {
    const Failure failure = CannotWrite(file);
    unlink(part.c_str());
    throw failure;
  }
}

}  // namespace kioctl
