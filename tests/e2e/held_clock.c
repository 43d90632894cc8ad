/* Loaded before libc: the monotonic clock stands still, but for what the test adds to it. It goes
 * on while the process waits, and not while it works. A wait ends early, so that the process looks
 * at the clock; a sleep only moves it. KIO_TEST_CLOCK names the file with the clock. */
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <time.h>
#include <unistd.h>

#include "clock_state.h"

enum { kPerSecond = 1000, kNanoseconds = 1000000, kLongestWait = 5 * kNanoseconds };

static volatile struct ClockState *g_clock;

__attribute__((constructor)) static void Prepare(void) {
  const char *const name = getenv("KIO_TEST_CLOCK");
  const int file = name != NULL ? open(name, O_RDWR | O_CLOEXEC) : -1;
  void *const map =
      mmap(NULL, sizeof(struct ClockState), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (map == MAP_FAILED) {
    abort();
  }
  close(file);
  g_clock = map;
  /* The commands have the real clock. */
  unsetenv("LD_PRELOAD");
}

int clock_gettime(clockid_t clock, struct timespec *time) {
  int (*real)(clockid_t, struct timespec *) = NULL;
  if (clock != CLOCK_MONOTONIC || g_clock == NULL) {
    *(void **)&real = dlsym(RTLD_NEXT, "clock_gettime");
    return real(clock, time);
  }
  time->tv_sec = g_clock->shown / kPerSecond;
  time->tv_nsec = g_clock->shown % kPerSecond * kNanoseconds;
  return 0;
}

int usleep(useconds_t microseconds) {
  enum { kMicroseconds = 1000 };
  g_clock->wanted += microseconds / kMicroseconds;
  g_clock->shown = g_clock->wanted;
  return 0;
}

static int IsLong(const struct timespec *timeout) {
  return timeout == NULL || timeout->tv_sec > 0 || timeout->tv_nsec > kLongestWait;
}

/* After a wait for `timeout`, of which `result` came. */
static int NoteWait(int result, const struct timespec *timeout) {
  g_clock->shown = g_clock->wanted;
  if (result == 0 && (timeout == NULL || timeout->tv_sec > 0 || timeout->tv_nsec > 0)) {
    ++g_clock->idle_waits;
  }
  return result;
}

static const struct timespec kShort = {0, kLongestWait};

int ppoll(struct pollfd *polled, nfds_t count, const struct timespec *timeout,
          const sigset_t *mask) {
  int (*real)(struct pollfd *, nfds_t, const struct timespec *, const sigset_t *) = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, "ppoll");
  return NoteWait(real(polled, count, IsLong(timeout) ? &kShort : timeout, mask), timeout);
}

int pselect(int count, fd_set *read_set, fd_set *write_set, fd_set *except_set,
            const struct timespec *timeout, const sigset_t *mask) {
  int (*real)(int, fd_set *, fd_set *, fd_set *, const struct timespec *, const sigset_t *) = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, "pselect");
  return NoteWait(
      real(count, read_set, write_set, except_set, IsLong(timeout) ? &kShort : timeout, mask),
      timeout);
}
