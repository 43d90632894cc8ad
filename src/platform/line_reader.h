// Reading a file line by line.
#ifndef KIO_PLATFORM_LINE_READER_H
#define KIO_PLATFORM_LINE_READER_H

#include <fcntl.h>

#include <cstddef>

#include "platform/file.h"

namespace kio::platform {

// The lines of a file. A line of more than kLineSize - 1 characters is handed out in pieces.
template <std::size_t kLineSize>
class LineReader {
 public:
  explicit LineReader(const char* path) : file_(OpenFile(path, O_RDONLY)) {}

  // Whether there is such a file.
  [[nodiscard]] bool ok() const { return file_.ok(); }

  // Reads the next line, its end included; false when there is none.
  bool Next(char (&line)[kLineSize]) {
    std::size_t size = 0;
    while (size < kLineSize - 1 && (next_ < filled_ || Fill())) {
      line[size++] = chunk_[next_++];
      if (line[size - 1] == '\n') {
        break;
      }
    }
    line[size] = '\0';
    return size > 0;
  }

 private:
  bool Fill() {
    next_ = 0;
    filled_ = file_.ok() ? ReadSome(file_, chunk_, sizeof(chunk_)) : 0;
    return filled_ > 0;
  }

  FileDescriptor file_;
  std::size_t next_ = 0;
  std::size_t filled_ = 0;
  char chunk_[512] = {};
};

}  // namespace kio::platform

#endif
