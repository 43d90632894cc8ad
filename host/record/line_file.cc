#include "record/line_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "printable_text.h"

namespace kiohost {

Status LineFile::Make(const std::string& file) {
  constexpr mode_t kForThisUser = S_IRUSR | S_IWUSR;
  name_ = file;
  file_ = FileDescriptor(open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kForThisUser));
  struct stat about = {};
  if (!file_.valid() || fstat(file_.get(), &about) != 0) {
    return {ExitCode::kDirectory, "cannot write " + file + ": " + std::strerror(errno)};
  }
  if (!S_ISREG(about.st_mode)) {
    return {};
  }
  if (about.st_size > 0) {
    return {ExitCode::kDirectory, file + " holds something already; name a new file"};
  }
  return fchmod(file_.get(), kForThisUser) == 0
             ? Status()
             : Status(ExitCode::kDirectory,
                      "others may read " + file + ": " + std::strerror(errno));
}

void LineFile::Add(const std::string& line) {
  if (!file_.valid()) {
    return;
  }
  const std::string text = line + "\n";
  size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = write(file_.get(), text.data() + written, text.size() - written);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      PrintError("cannot write " + name_ + ": " + std::strerror(errno) +
                 "; it ends with what was written before");
      // A file that cannot be cut, such as a pipe, keeps a part of the line.
      static_cast<void>(!ftruncate(file_.get(), length_));
      file_ = FileDescriptor();
      return;
    }
    written += static_cast<size_t>(count);
  }
  length_ += static_cast<off_t>(text.size());
}

}  // namespace kiohost
