#include "expect.h"

#include <stdio.h>
#include <string.h>

static int g_checks = 0;
static int g_failures = 0;

static const char *Shown(const char *text) { return text != NULL ? text : "(null)"; }

void ExpectInt(const char *file, int line, const char *what, long actual, long expected) {
  ++g_checks;
  if (actual != expected) {
    ++g_failures;
    fprintf(stderr, "%s:%d: %s is %ld, expected %ld\n", file, line, what, actual, expected);
  }
}

void ExpectText(const char *file, int line, const char *what, const char *actual,
                const char *expected) {
  ++g_checks;
  if ((actual == NULL) != (expected == NULL) || strcmp(Shown(actual), Shown(expected)) != 0) {
    ++g_failures;
    fprintf(stderr, "%s:%d: %s is '%s', expected '%s'\n", file, line, what, Shown(actual),
            Shown(expected));
  }
}

int ExpectStatus(void) {
  printf("%d checks, %d failures\n", g_checks, g_failures);
  return g_checks > 0 && g_failures == 0 ? 0 : 1;
}
