/* Loaded before libc: the monotonic clock stands still, but for what the test adds to it. It goes
 * on while the thread of the sockets waits, and not while it works; without such a thread, while
 * the process waits. A wait ends early, so that the process looks at the clock; a sleep only moves
 * it. KIO_TEST_CLOCK names the file with the clock. */
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <time.h>
#include <unistd.h>

#include "clock_state.h"

enum {
  kPerSecond = 1000,
  kNanoseconds = 1000000,
  kMicrosecond = 1000,
  kLongestWait = 5 * kNanoseconds
};

static volatile struct ClockState *g_clock;

/* Threads that serve sockets: they wait by select. */
static int g_socket_threads;
static pthread_key_t g_in_socket_thread;

static void NoteEndOfThread(void *unused) {
  (void)unused;
  __atomic_sub_fetch(&g_socket_threads, 1, __ATOMIC_SEQ_CST);
}

__attribute__((constructor)) static void Prepare(void) {
  const char *const name = getenv("KIO_TEST_CLOCK");
  const int file = name != NULL ? open(name, O_RDWR | O_CLOEXEC) : -1;
  void *const map =
      mmap(NULL, sizeof(struct ClockState), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (map == MAP_FAILED) {
    abort();
  }
  close(file);
  pthread_key_create(&g_in_socket_thread, NoteEndOfThread);
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

/* After a wait that ended with `result`. */
static int NoteWait(int result, int had_time) {
  g_clock->shown = g_clock->wanted;
  if (result == 0 && had_time != 0) {
    ++g_clock->idle_waits;
  }
  return result;
}

static int HasTime(const struct timespec *timeout) {
  return timeout == NULL || timeout->tv_sec > 0 || timeout->tv_nsec > 0;
}

/* After a wait of the thread that runs commands. */
static int NoteOtherWait(int result, const struct timespec *timeout) {
  if (__atomic_load_n(&g_socket_threads, __ATOMIC_SEQ_CST) == 0) {
    NoteWait(result, HasTime(timeout));
  }
  return result;
}

static const struct timespec kShort = {0, kLongestWait};

int ppoll(struct pollfd *polled, nfds_t count, const struct timespec *timeout,
          const sigset_t *mask) {
  int (*real)(struct pollfd *, nfds_t, const struct timespec *, const sigset_t *) = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, "ppoll");
  return NoteOtherWait(real(polled, count, IsLong(timeout) ? &kShort : timeout, mask), timeout);
}

int select(int count, fd_set *read_set, fd_set *write_set, fd_set *except_set,
           struct timeval *timeout) {
  int (*real)(int, fd_set *, fd_set *, fd_set *, struct timeval *) = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, "select");
  if (pthread_getspecific(g_in_socket_thread) == NULL) {
    pthread_setspecific(g_in_socket_thread, &g_socket_threads);
    __atomic_add_fetch(&g_socket_threads, 1, __ATOMIC_SEQ_CST);
  }
  const int had_time = timeout == NULL || timeout->tv_sec > 0 || timeout->tv_usec > 0;
  struct timeval shortened = {0, kLongestWait / kMicrosecond};
  if (timeout != NULL && timeout->tv_sec == 0 && timeout->tv_usec < shortened.tv_usec) {
    shortened = *timeout;
  }
  return NoteWait(real(count, read_set, write_set, except_set, &shortened), had_time);
}
