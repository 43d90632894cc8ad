/* Loaded before libc: an alarm rings ten minutes later than it was set for. */
#include <sys/time.h>
#include <unistd.h>

unsigned int alarm(unsigned int seconds) {
  enum { kLate = 600 };
  struct itimerval timer = {{0, 0}, {seconds == 0 ? 0 : (time_t)seconds + kLate, 0}};
  struct itimerval before;
  setitimer(ITIMER_REAL, &timer, &before);
  return (unsigned int)before.it_value.tv_sec;
}
