/* The clock that held_clock.c shows to a host. */
#ifndef TESTS_E2E_CLOCK_STATE_H
#define TESTS_E2E_CLOCK_STATE_H

/* In a file that the host and the test share. Milliseconds. */
struct ClockState {
  long wanted; /* what the clock is to show when the host waits next */
  long shown;
  int idle_waits; /* how often the host waited and nothing came */
};

#endif
