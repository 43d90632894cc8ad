/* Loaded before libc: counts the steps of the process, and sends it a signal before one of them. A
 * step changes a file, starts a command or sends an answer; between two of them a kill changes
 * nothing. A wait for an event or a command is a step when it is asked for. KIO_TEST_STEPS names
 * the file with the count. */
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include "steps.h"

static volatile struct StepCount *g_count;

__attribute__((constructor)) static void Prepare(void) {
  const char *const name = getenv("KIO_TEST_STEPS");
  const int file = name != NULL ? open(name, O_RDWR | O_CLOEXEC) : -1;
  void *const map =
      mmap(NULL, sizeof(struct StepCount), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (map == MAP_FAILED) {
    abort();
  }
  close(file);
  g_count = map;
  /* The steps of the commands are not those of the host. */
  unsetenv("LD_PRELOAD");
}

static void Step(void) {
  if (__atomic_add_fetch(&g_count->taken, 1, __ATOMIC_SEQ_CST) == g_count->at) {
    kill(getpid(), g_count->signal_number);
  }
}

static void Wait(void) {
  if (g_count->with_waits != 0) {
    Step();
  }
}

#define REAL(function, type)                       \
  static type *real;                               \
  if (real == NULL) {                              \
    *(void **)&real = dlsym(RTLD_NEXT, #function); \
  }

typedef ssize_t PositionedWrite(int, const void *, size_t, off64_t);
typedef ssize_t Write(int, const void *, size_t);
typedef int FileFunction(int);
typedef int Unlink(const char *);
typedef ssize_t Send(int, const void *, size_t, int);
typedef ssize_t SendMessage(int, const struct msghdr *, int);
typedef int Spawn(pid_t *, const char *, const posix_spawn_file_actions_t *,
                  const posix_spawnattr_t *, char *const[], char *const[]);
typedef int Poll(struct pollfd *, nfds_t, const struct timespec *, const sigset_t *);

ssize_t pwrite64(int fd, const void *data, size_t size, off64_t at) {
  REAL(pwrite64, PositionedWrite)
  Step();
  return real(fd, data, size, at);
}

ssize_t write(int fd, const void *data, size_t size) {
  REAL(write, Write)
  Step();
  return real(fd, data, size);
}

int fsync(int fd) {
  REAL(fsync, FileFunction)
  Step();
  return real(fd);
}

int fdatasync(int fd) {
  REAL(fdatasync, FileFunction)
  Step();
  return real(fd);
}

int unlink(const char *path) {
  REAL(unlink, Unlink)
  Step();
  return real(path);
}

ssize_t send(int socket, const void *data, size_t size, int flags) {
  REAL(send, Send)
  Step();
  return real(socket, data, size, flags);
}

ssize_t sendmsg(int socket, const struct msghdr *message, int flags) {
  REAL(sendmsg, SendMessage)
  Step();
  return real(socket, message, flags);
}

int posix_spawn(pid_t *pid, const char *path, const posix_spawn_file_actions_t *actions,
                const posix_spawnattr_t *attributes, char *const arguments[],
                char *const environment[]) {
  REAL(posix_spawn, Spawn)
  Step();
  return real(pid, path, actions, attributes, arguments, environment);
}

int ppoll(struct pollfd *polled, nfds_t count, const struct timespec *timeout,
          const sigset_t *mask) {
  REAL(ppoll, Poll)
  Wait();
  return real(polled, count, timeout, mask);
}
