// The system() that the library calls: the program's comes before the C library's.
//
// The C library's ignores SIGINT while a command runs, so that a stop asked for meanwhile, or even
// pending when the command begins, would be lost; it hands the host's blocked and ignored signals
// on to the command; and it leaves the command in the host's process group, where Ctrl-C would end
// a resync script, or the writing of a result document, half-way.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace {

class SpawnAttributes {
 public:
  SpawnAttributes() : valid_(posix_spawnattr_init(&attributes_) == 0) {
    sigset_t none;
    sigemptyset(&none);
    sigset_t ignored;
    sigemptyset(&ignored);
    sigaddset(&ignored, SIGPIPE);
    valid_ = valid_ && posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
             posix_spawnattr_setsigdefault(&attributes_, &ignored) == 0 &&
             posix_spawnattr_setpgroup(&attributes_, 0) == 0 &&
             posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                        POSIX_SPAWN_SETPGROUP) == 0;
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  bool valid() const { return valid_; }
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_ = {};
  bool valid_;
};

}  // namespace

// Returns the command's wait status, -1 when it could not be started.
extern "C" [[gnu::visibility("default")]] int system(const char* command) {
  if (command == nullptr) {
    return 1;  // there is a shell
  }
  const SpawnAttributes attributes;
  // The strings are not written to; execve takes them so.
  char* const arguments[] = {const_cast<char*>("sh"), const_cast<char*>("-c"),
                             const_cast<char*>(command), nullptr};
  pid_t child = -1;
  if (!attributes.valid() ||
      posix_spawn(&child, "/bin/sh", nullptr, attributes.get(), arguments, environ) != 0) {
    return -1;
  }
  int status = -1;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return -1;
    }
  }
  return status;
}
