// A file for the user alone that grows line by line.
#ifndef HOST_RECORD_LINE_FILE_H
#define HOST_RECORD_LINE_FILE_H

#include <sys/types.h>

#include <string>

#include "listener.h"
#include "status.h"

namespace kiohost {

class LineFile {
 public:
  // Makes the file. One that holds something is refused.
  Status Make(const std::string& file);

  // Writes a line. When it cannot be written, none of it stays, that is told on standard error, and
  // no other line follows.
  void Add(const std::string& line);

 private:
  std::string name_;
  FileDescriptor file_;
  off_t length_ = 0;
};

}  // namespace kiohost

#endif  // HOST_RECORD_LINE_FILE_H
