/* Calls each exported function with null pointers, one at a time and all at once, each time in a
 * process of its own. The rule of kioapp.h: no call is stopped; a null text is as good as an empty
 * one; through a null pointer nothing is written, and a function that returns what it was given
 * returns null. What a comment says of a null pointer besides stands in kMeanings. */
#include <kioapp/settings.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include "device.h"
#include "expect.h"
#include "null_calls.h"
#include "testing/scratch.h"

enum Kind { kGiven, kNull, kEmpty };

/* Where a null pointer is not as good as an empty text: the answer to it. */
static const struct Meaning {
  const char *function;
  int pointer;
  const char *answer;
} kMeanings[] = {
    {"setget_RssVar", 1, "2"},    {"set_RssVar", 1, "2"},           {"validate_RssVar", 1, "2"},
    {"validate_RssData", 0, "3"}, {"do_FwFirmware_Parser", 0, "0"}, {NULL, 0, NULL},
};

static enum Kind g_kinds[kMostPointers];
static char g_buffers[kMostPointers][4096];
static char g_answer[1024];

char *Text(int index, const char *text) {
  if (g_kinds[index] == kNull) {
    return NULL;
  }
  snprintf(g_buffers[index], sizeof(g_buffers[index]), "%s", g_kinds[index] == kEmpty ? "" : text);
  return g_buffers[index];
}

void *Buffer(int index) { return g_kinds[index] == kNull ? NULL : g_buffers[index]; }

void *Other(int index, void *object) { return g_kinds[index] == kNull ? NULL : object; }

void ReturnedNumber(long number) { snprintf(g_answer, sizeof(g_answer), "%ld", number); }

void ReturnedText(const char *text) {
  snprintf(g_answer, sizeof(g_answer), "%s", text != NULL ? text : "(null)");
}

void ReturnedNothing(void) { snprintf(g_answer, sizeof(g_answer), "nothing"); }

/* In the child: calls the function and writes what it returned, and what its buffers hold. */
static void CallAndTell(const struct NullRow *row, int out) {
  /* What the shell says of files that do not exist. */
  if (freopen("/dev/null", "w", stdout) == NULL || freopen("/dev/null", "w", stderr) == NULL) {
    _exit(1);
  }
  StoreDevice();
  restore_XmlRssStatus(1);
  row->call();
  size_t size = strlen(g_answer);
  for (int i = 0; row->pointers[i] != '\0'; ++i) {
    if (row->pointers[i] == 'w') {
      size += (size_t)snprintf(g_answer + size, sizeof(g_answer) - size, "|%.100s", g_buffers[i]);
    }
  }
  fflush(stdout);
  _exit(write(out, g_answer, size) == (ssize_t)size ? 0 : 1);
}

/* The answer in the present case, or how the process ended. */
static const char *Answer(const struct NullRow *row) {
  static char answers[2][1024];
  static int turn = 0;
  char *const answer = answers[turn ^= 1];
  int ends[2];
  if (pipe(ends) != 0) {
    return "no pipe";
  }
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    CallAndTell(row, ends[1]);
  }
  close(ends[1]);
  const ssize_t size = read(ends[0], answer, sizeof(answers[0]) - 1);
  close(ends[0]);
  answer[size > 0 ? size : 0] = '\0';
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) {
    snprintf(answer, sizeof(answers[0]), "ended with status %d", status);
  }
  return answer;
}

static const char *Meaning(const char *function, int pointer) {
  for (const struct Meaning *meaning = kMeanings; meaning->function != NULL; ++meaning) {
    if (strcmp(meaning->function, function) == 0 && meaning->pointer == pointer) {
      return meaning->answer;
    }
  }
  return NULL;
}

static void CheckOne(const struct NullRow *row, int pointer) {
  const char *expected = Meaning(row->name, pointer);
  memset(g_kinds, 0, sizeof(g_kinds));
  if (expected == NULL && row->pointers[pointer] == 'i') {
    expected = "(null)";
  }
  if (expected == NULL && row->pointers[pointer] == 't') {
    g_kinds[pointer] = kEmpty;
    expected = Answer(row);
  }
  g_kinds[pointer] = kNull;
  const char *const answer = Answer(row);
  char what[64];
  snprintf(what, sizeof(what), "%s, pointer %d null", row->name, pointer);
  if (expected != NULL) {
    ExpectText(__FILE__, __LINE__, what, answer, expected);
  } else {
    ExpectInt(__FILE__, __LINE__, what, strncmp(answer, "ended", 5) == 0, 0);
  }
}

static void CheckAll(const struct NullRow *row) {
  char what[64];
  snprintf(what, sizeof(what), "%s, all null", row->name);
  for (int i = 0; i < kMostPointers; ++i) {
    g_kinds[i] = kNull;
  }
  ExpectInt(__FILE__, __LINE__, what, strncmp(Answer(row), "ended", 5) == 0, 0);
}

int main(void) {
  ScratchDirectory(); /* by this process, which removes it */
  for (const struct NullRow *row = kNullRows; row->name != NULL; ++row) {
    if (row->call == NULL) {
      continue;
    }
    memset(g_kinds, 0, sizeof(g_kinds));
    ExpectInt(__FILE__, __LINE__, row->name, strncmp(Answer(row), "ended", 5) == 0, 0);
    for (int pointer = 0; row->pointers[pointer] != '\0'; ++pointer) {
      CheckOne(row, pointer);
    }
    CheckAll(row);
  }
  return ExpectStatus();
}
