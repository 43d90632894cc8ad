// Keeps a second host away from what one host uses.
#ifndef HOST_FILE_LOCK_H
#define HOST_FILE_LOCK_H

#include <string>

#include "listener.h"
#include "status.h"

namespace kiohost {

// A lock of the kernel's on a file that is made for it. It goes with the process, however that
// ends; programs that the process starts do not have it. The file stays. A process locks a file
// once: another FileLock of it in the same process would share the lock, and end it.
class FileLock {
 public:
  // Fails when another process holds the lock, with the id of that process. `subject` is what is
  // locked ("the store kiohost.db"), for the reason.
  Status Take(const std::string& file, const std::string& subject);

 private:
  FileDescriptor file_;
};

}  // namespace kiohost

#endif  // HOST_FILE_LOCK_H
