/* footprint: measures what the library takes while it works, and prints one figure a line.
 *
 *   stack_*   the deepest stack of a call, the C library's share included
 *   heap_*    calls of the allocator during it
 *   document_rules_*  bytes of a document with so many rules for each radio
 *   cost_*    instructions, those in the C library and in the store included, and after them the
 *             library's own; only under count_plugin.c, which prints these two numbers */
#include <dlfcn.h>
#include <kioapp/log.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/sysinfo.h>
#include <time.h>

#include "marks.h"
#include "scenarios.h"
#include "scene.h"
#include "testing/scratch.h"

enum { kStackSize = 256 * 1024, kPaint = 0xA5 };

static int g_run_commands = 1;
/* Changed behind functions that the headers call leaves. */
static volatile int g_heap_calls = 0;

/* --- what stands before the C library's functions --- */

/* The shell's own work is not the library's, and counts of it would not repeat. */
int system(const char *command) {
  static int (*libc_system)(const char *) = NULL;
  if (!g_run_commands) {
    return 0;
  }
  if (libc_system == NULL) {
    *(void **)&libc_system = dlsym(RTLD_NEXT, "system");
  }
  return libc_system(command);
}

/* The digits of the uptime stand in the log. */
int sysinfo(struct sysinfo *info) {
  memset(info, 0, sizeof(*info));
  info->uptime = 123456;
  return 0;
}

/* The session's number is made from it, and its digits are counted. */
time_t time(time_t *place) {
  const time_t now = 1234567890;
  if (place != NULL) {
    *place = now;
  }
  return now;
}

static union {
  char bytes[1024 * 1024];
  long double most_aligned;
} g_heap;

void *malloc(size_t size) {
  static size_t used = 0;
  ++g_heap_calls;
  const size_t begin = used + 16;
  if (size > sizeof(g_heap.bytes) - begin) {
    return NULL;
  }
  /* For realloc. */
  memcpy(g_heap.bytes + used, &size, sizeof(size));
  used = (begin + size + 15) / 16 * 16;
  return g_heap.bytes + begin;
}

void free(void *memory) { (void)memory; }

/* The memory is fresh, and so zero. */
void *calloc(size_t count, size_t size) { return malloc(count * size); }

void *realloc(void *memory, size_t size) {
  char *const moved = malloc(size);
  if (memory != NULL && moved != NULL) {
    size_t old = 0;
    memcpy(&old, (const char *)memory - 16, sizeof(old));
    memcpy(moved, memory, old < size ? old : size);
  }
  return moved;
}

void Stop(const char *what) {
  fprintf(stderr, "footprint: %s\n", what);
  exit(1);
}

/* --- the measurements --- */

static void (*volatile g_on_stack)(void) = NULL;

static void OnSignal(int number) {
  (void)number;
  g_on_stack();
}

static void Nothing(void) {}

/* Bytes from the top of a signal's own stack to the lowest one that a call changed. */
static size_t StackOf(void (*run)(void)) {
  static unsigned char stack[kStackSize];
  memset(stack, kPaint, sizeof(stack));
  stack_t place = {0};
  place.ss_sp = stack;
  place.ss_size = sizeof(stack);
  struct sigaction action = {0};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_ONSTACK;
  g_on_stack = run;
  if (sigaltstack(&place, NULL) != 0 || sigaction(SIGUSR1, &action, NULL) != 0 ||
      raise(SIGUSR1) != 0) {
    Stop("no stack of its own");
  }
  size_t untouched = 0;
  while (untouched < sizeof(stack) && stack[untouched] == kPaint) {
    ++untouched;
  }
  return sizeof(stack) - untouched;
}

static void Mark(int mark, unsigned long first, unsigned long second) {
  prctl(kMagic, mark, first, second);
}

static void MarkLibrary(void) {
  FILE *const maps = fopen("/proc/self/maps", "r");
  char line[512];
  int found = 0;
  while (maps != NULL && fgets(line, sizeof(line), maps) != NULL) {
    char *end = NULL;
    const unsigned long first = strtoul(line, &end, 16);
    const unsigned long last = *end == '-' ? strtoul(end + 1, &end, 16) : 0;
    if (strstr(end, "libkioapp.so") != NULL && strncmp(end, " r-x", 4) == 0) {
      Mark(kMarkRange, first, last);
      found = 1;
    }
  }
  if (!found) {
    Stop("the library's code is not found");
  }
  fclose(maps);
}

static void MeasureCost(const struct Scenario *scenario, const char *name) {
  g_run_commands = 0;
  /* The first run brings everything to where it is in a process that has run for a while. */
  for (int run = 0; run < 2; ++run) {
    scenario->prepare();
    Mark(kMarkBegin, 0, 0);
    scenario->run();
    Mark(kMarkEnd, 0, 0);
    scenario->check();
  }
  printf("cost_%s ", name);
  fflush(stdout);
  Mark(kMarkReport, 0, 0);
}

static void MeasureStackAndHeap(const struct Scenario *scenario, int level) {
  daemon_log_level = level;
  const size_t empty = StackOf(Nothing);
  /* The first run binds names, which takes stack of the loader. */
  scenario->prepare();
  scenario->run();
  scenario->prepare();
  const int calls = g_heap_calls;
  const size_t used = StackOf(scenario->run);
  const int heap = g_heap_calls - calls;
  scenario->check();
  printf("stack_%s_level%d %lu\n", scenario->name, level, (unsigned long)(used - empty));
  printf("heap_%s_level%d %d\n", scenario->name, level, heap);
}

/* The exchange, the first scenario, with documents of several sizes. */
static void MeasureDocuments(int costs) {
  enum { kStep = 10 };
  for (int rules = 0; rules <= kDocumentRules; rules += kStep) {
    char name[64];
    SetDocumentRules(rules);
    if (costs) {
      snprintf(name, sizeof(name), "%s_rules_%d", kScenarios[0].name, rules);
      MeasureCost(&kScenarios[0], name);
    } else {
      printf("document_rules_%d %lu\n", rules, (unsigned long)DocumentSize());
    }
  }
}

int main(int argc, char **argv) {
  const int costs = argc > 1 && strcmp(argv[1], "--costs") == 0;
  snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", ScratchDirectory());
  if (costs) {
    MarkLibrary();
  }
  for (size_t i = 0; i < kScenarioCount; ++i) {
    if (costs) {
      MeasureCost(&kScenarios[i], kScenarios[i].name);
    } else {
      MeasureStackAndHeap(&kScenarios[i], 5);
      MeasureStackAndHeap(&kScenarios[i], 7);
    }
  }
  MeasureDocuments(costs);
  return 0;
}
