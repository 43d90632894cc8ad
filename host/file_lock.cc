#include "file_lock.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace kiohost {
namespace {

// The whole file.
struct flock WriteLock() {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

// The process that holds the lock; 0 when it has been released, or its holder cannot be seen from
// here.
pid_t Holder(int fd) {
  struct flock lock = WriteLock();
  return fcntl(fd, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK && lock.l_pid > 0 ? lock.l_pid
                                                                                    : 0;
}

}  // namespace

Status FileLock::Take(const std::string& file, const std::string& subject) {
  // This kind of lock belongs to the process and tells who holds it, which flock(2) does not.
  FileDescriptor opened(
      open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
  if (!opened.valid()) {
    return {ExitCode::kDirectory,
            "cannot lock " + subject + ": " + file + ": " + std::strerror(errno)};
  }
  const struct flock lock = WriteLock();
  if (fcntl(opened.get(), F_SETLK, &lock) != 0) {
    if (errno != EACCES && errno != EAGAIN) {
      return {ExitCode::kDirectory,
              "cannot lock " + subject + ": " + file + ": " + std::strerror(errno)};
    }
    const pid_t holder = Holder(opened.get());
    return {ExitCode::kDirectory,
            subject + " is in use by " +
                (holder > 0 ? "process " + std::to_string(holder) : "another process")};
  }
  file_ = std::move(opened);
  return {};
}

}  // namespace kiohost
