/* The steps of a host, which signal_at_step.c counts. */
#ifndef TESTS_E2E_STEPS_H
#define TESTS_E2E_STEPS_H

/* In a file that the host and the test share. */
struct StepCount {
  int taken;         /* since the test has set it to 0 */
  int at;            /* the step that a signal comes before; 0: none */
  int signal_number; /* of this signal */
  int with_waits;    /* whether a wait counts as a step */
};

#endif
