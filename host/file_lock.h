// Keeps a second host away from what one host uses.
#ifndef HOST_FILE_LOCK_H
#define HOST_FILE_LOCK_H

#include <string>

#include "listener.h"
#include "status.h"

namespace kiohost {

// A lock of the kernel on a file that is made for it. It ends with the process, however that ends,
// and is not inherited by programs that the process starts. The file stays. A process must lock a
// file only once: a second FileLock of it would share the lock and release it.
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
