/* What may differ between C libraries, word lengths and byte orders. */
#include <kioapp/kioapp.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/mman.h>
#include <sys/sysinfo.h>

#include "expect.h"
#include "scene.h"
#include "testing/scratch.h"

static long g_uptime = 0;

int sysinfo(struct sysinfo *info) {
  memset(info, 0xFF, sizeof(*info));
  info->uptime = (__typeof__(info->uptime))g_uptime; /* unsigned with musl */
  return 0;
}

static void CheckUptime(void) {
  static const long kUptimes[] = {0, 99, 2147483647, LONG_MAX};
  for (size_t i = 0; i < sizeof(kUptimes) / sizeof(kUptimes[0]); ++i) {
    char expected[128];
    g_uptime = kUptimes[i];
    snprintf(expected, sizeof(expected), "%ld", kUptimes[i]);
    EXPECT_INT(sys_uptime_seconds(), kUptimes[i]);
    EXPECT_TEXT(sys_uptime_sec_str(), expected);
    remove(ScratchPath("target_log.txt"));
    logPrintf(5, "%ld|%lu|%d\n", kUptimes[i], ULONG_MAX, INT_MIN);
    snprintf(expected, sizeof(expected), "%ld: %ld|%lu|-2147483648\n", kUptimes[i], kUptimes[i],
             ULONG_MAX);
    EXPECT_TEXT(ScratchText("target_log.txt"), expected);
  }
  g_uptime = 7;
}

/* vsnprintf returns what it would have written, or something else. */
static void CheckLongMessages(void) {
  enum { kKept = 5119, kPrefix = 3 };
  static char text[9000];
  memset(text, 'x', sizeof(text) - 1);
  remove(ScratchPath("target_log.txt"));
  logPrintf(5, "%s\n", text);
  const char *const log = ScratchText("target_log.txt");
  if (log == NULL) {
    EXPECT_TEXT("the log", NULL);
    return;
  }
  EXPECT_INT(strlen(log), kPrefix + kKept);
  EXPECT_INT(strncmp(log, "7: xxx", 6), 0);
  EXPECT_INT(log[kPrefix + kKept - 1], 'x');
  /* The line was left open. */
  remove(ScratchPath("target_log.txt"));
  logPrintf(5, "%s %5.1f%% %c\n", "", 12.5, 'c');
  EXPECT_TEXT(ScratchText("target_log.txt"), "  12.5% c\n");
}

static void CheckNumberRules(void) {
  static const struct {
    const char *value;
    int code;
  } kCases[] = {{"14", 0},   {"14.001", 20}, {"1", 0},      {".999", 21},  {" 1e1", 0},
                {"1e2", 20}, {"inf", 20},    {"-inf", 21},  {"1e999", 20}, {"nan", 0},
                {"5x", 0},   {"-1e999", 21}, {"1e-999", 21}};
  for (size_t i = 0; i < sizeof(kCases) / sizeof(kCases[0]); ++i) {
    ExpectInt(kCases[i].value, 0, "its code", validate_RssData(kCases[i].value, "1,14,1"),
              kCases[i].code);
  }
  /* Single precision: the next double above the bound is the bound. */
  EXPECT_INT(validate_RssData("16777217", "1,16777216,1"), 0);
  EXPECT_INT(validate_RssData("16777218", "1,16777216,1"), 20);
}

static const char *PlainSearch(const char *text, const char *needle) {
  for (; *text != '\0'; ++text) {
    if (strncasecmp(text, needle, strlen(needle)) == 0) {
      return text;
    }
  }
  return NULL;
}

/* Whole words are searched at once: the first match must be found at each place in a word. */
static void CheckSearches(void) {
  static const char *const kNeedles[] = {"a",  "B", "ab", "<a>", "</name>", "k\x80",
                                         "aB", "z", "@",  "[",   "{",       "<wirelessname>"};
  char text[64];
  for (size_t needle = 0; needle < sizeof(kNeedles) / sizeof(kNeedles[0]); ++needle) {
    const size_t size = strlen(kNeedles[needle]);
    for (size_t at = 0; at + size < sizeof(text); ++at) {
      memset(text, (needle % 2) != 0 ? '\xC1' : '!', sizeof(text) - 1);
      text[sizeof(text) - 1] = '\0';
      memcpy(text + at, kNeedles[needle], size);
      memcpy(text + sizeof(text) - 1 - size, kNeedles[needle], size);
      EXPECT_TEXT(strstri(text, kNeedles[needle]), PlainSearch(text, kNeedles[needle]));
    }
  }
}

static void CheckFileSizes(void) {
  FILE *const file = fopen(ScratchPath("large"), "wb");
  EXPECT_INT(file != NULL && fseek(file, 0x7FFFFFF0L, SEEK_SET) == 0 && putc('x', file) == 'x', 1);
  if (file != NULL) {
    fclose(file);
  }
  EXPECT_INT(getFileSize(ScratchPath("large")), 0x7FFFFFF1U);
  remove(ScratchPath("large"));
}

/* A text in the upper half of 32-bit addresses, and limits that reach behind their end. Programs on
 * MIPS have the lower half only. */
static void CheckLargestLimits(void) {
  enum { kSize = 4096 };
  static const int kLimits[] = {INT_MAX, INT_MAX - kSize};
  char *const place = (char *)mmap((void *)0xA0000000U, kSize, PROT_READ | PROT_WRITE,
                                   MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  EXPECT_INT(place != MAP_FAILED, 1);
  if (place == MAP_FAILED) {
    return;
  }
#if defined(__i386__) || defined(__arm__)
  EXPECT_INT((unsigned long)place > 0x80000000U, 1);
#endif
  for (size_t i = 0; i < sizeof(kLimits) / sizeof(kLimits[0]); ++i) {
    EXPECT_TEXT(strncpy_XmlEncode(place, "<a> & b", kLimits[i]), "&lt;a&gt; &amp; b");
    EXPECT_TEXT(strncpy_XmlDecode(place, "&lt;a&gt; &amp; b", kLimits[i]), "<a> & b");
    EXPECT_TEXT(strncpy_HtmlEncode(place, "<a> b", kLimits[i]), "%3Ca%3E+b");
    EXPECT_TEXT(strncpy_HtmlDecode(place, "%3Ca%3E+b", kLimits[i]), "<a> b");
    memset(place, 0, kSize);
  }
  munmap(place, kSize);
}

int main(void) {
  snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", ScratchDirectory());
  snprintf(daemon_log_header, sizeof(daemon_log_header), "target");
  ResetDevice();
  CheckUptime();
  CheckLongMessages();
  CheckNumberRules();
  CheckSearches();
  CheckFileSizes();
  CheckLargestLimits();
  return ExpectStatus();
}
