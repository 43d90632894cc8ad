/* Calls of the platform services and the log. */
#include <fcntl.h>
#include <kioapp/log.h>
#include <kioapp/platform.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "calls.h"
#include "expect.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

static uintptr_t g_called_with = 0;

static void KeepArgument(uintptr_t argument) { g_called_with = argument; }

/* The log lies in the test's directory from the first message on. */
static void CheckLog(void) {
  EXPECT_INT(daemon_log_level, 5);
  EXPECT_INT(daemon_log_file_size_k, 250);
  EXPECT_TEXT(daemon_log_header, "");
  EXPECT_TEXT(daemon_log_path, "");
  snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", ScratchDirectory());
  snprintf(daemon_log_header, sizeof(daemon_log_header), "abi");

  logPrintf(6, "not kept\n");
  EXPECT_TEXT(ScratchText("abi_log.txt"), NULL);
  logPrintf(5, "channel %d\n", 6);
  const char *const log = ScratchText("abi_log.txt");
  EXPECT_TEXT(log != NULL ? strchr(log, ':') : NULL, ": channel 6\n");

  EXPECT_INT(msgPrintf("%s\n", "told"), 5);
  EXPECT_INT(dbgPrintf("%s\n", "not told"), 0);
}

static void CheckTimers(void) {
  KioTimer *const waiting = create_timer(7, KeepArgument, 1, 2, 3);
  if (waiting != NULL) {
    EXPECT_INT(waiting->remaining, 7);
    EXPECT_INT(waiting->interval, 7);
    EXPECT_INT(waiting->arg, 1);
    EXPECT_INT(waiting->user_a, 2);
    EXPECT_INT(waiting->user_b, 3);
    EXPECT_INT(waiting->callback == KeepArgument, 1);
  }
  EXPECT_INT(waiting != NULL, 1);
  free(waiting);

  KioTimer *const due = create_timer(0, KeepArgument, 99, 0, 0);
  EXPECT_INT(due != NULL, 1);
  if (due != NULL) {
    add_timer(due);
  }
  EXPECT_INT(g_called_with, 99);
  free(due);
}

static void CheckActions(void) {
  ClearStore();
  SetNode("/zentrolinks/scriptdirecory", ScratchDirectory());
  FILE *const script = fopen(ScratchPath("device_resync.sh"), "w");
  EXPECT_INT(script != NULL, 1);
  if (script != NULL) {
    fprintf(script, "#!/bin/sh\necho ran >> %s\n", ScratchPath("events"));
    fclose(script);
  }
  EXPECT_INT(chmod(ScratchPath("device_resync.sh"), S_IRWXU), 0);
  EXPECT_INT(get_ExternalCall_UseSec(KIOAPP_SYNC_DEVICE), 5);
  EXPECT_INT(get_ExternalCall_UseSec(2), 0);
  EXPECT_INT(exe_ExternalCall(KIOAPP_SYNC_DEVICE), 0);
  EXPECT_TEXT(ScratchText("events"), "ran\n");
}

void CheckPlatformCalls(void) {
  CheckLog();
  CheckTimers();
  CheckActions();

  const long before = sys_uptime_seconds();
  const long told = strtol(sys_uptime_sec_str(), NULL, 10);
  EXPECT_INT(before > 0, 1);
  EXPECT_INT(before <= told && told <= sys_uptime_seconds(), 1);
  EXPECT_TEXT(starterLibVersion(), "b1.2.3a");
  EXPECT_TEXT(rssSpecVersion(), "1.1");
  EXPECT_INT(getFileSize(ScratchPath("events")), 4);
  EXPECT_INT(getFileSize("/absent"), 0xFFFFFFFFU);
}
