/* Calls of the variable interface. */
#include <kioapp/platform.h>
#include <kioapp/record.h>
#include <kioapp/settings.h>
#include <kioapp/variables.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "calls.h"
#include "device.h"
#include "expect.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

static void CheckNames(void) {
  EXPECT_TEXT(cvtRss_XmlPathVsVarName("rss_DeviceName", 1), "/Device/DeviceName");
  EXPECT_TEXT(cvtRss_XmlPathVsVarName("/Device/DeviceName", 0), "rss_DeviceName");
  EXPECT_TEXT(cvtRss_XmlPathVsVarName("DeviceName", 1), NULL);
}

static void CheckSingleVariables(void) {
  char value[KIOAPP_VAR_SIZE] = "Attic";
  StoreDevice();
  init_RssVar();
  EXPECT_INT(set_RssVar("rss_DeviceName", value), KIOAPP_VAR_DONE);
  EXPECT_TEXT(rssXmlData.deviceName, "Attic");
  EXPECT_TEXT(getRssVar("rss_DeviceName"), "Attic");
  EXPECT_TEXT(getRssVar("rss_Nothing"), "**ERROR**");
  EXPECT_INT(get_RssVar("rss_DeviceName", value, 1), KIOAPP_VAR_DONE);
  EXPECT_TEXT(value, "/sys/friendlyname");
  EXPECT_INT(setget_RssVar("rss_DeviceName", value, KIOAPP_VAR_READ), KIOAPP_VAR_DONE);
  EXPECT_TEXT(value, "Attic");

  snprintf(value, sizeof(value), "2");
  EXPECT_INT(validate_RssVar("rss_Vyr_UrlDetectEnbl", value), KIOAPP_VAR_REFUSED);
  char pair[] = "rss_Vyr_UrlDetectEnbl=1";
  EXPECT_INT(validate_RssVar2(pair), KIOAPP_VAR_DONE);
  char no_pair[] = "rss_Vyr_UrlDetectEnbl";
  EXPECT_INT(validate_RssVar2(no_pair), KIOAPP_VAR_MALFORMED);
}

static void CheckBatch(void) {
  char name[KIOAPP_VAR_SIZE] = "?";
  char batch[] = "rss_DeviceName=Cellar; rss_DevicePwd=secret34";
  EXPECT_INT(do_RssVar_Parser(batch, ';', name, 1), KIOAPP_RESULT_APPLIED);
  EXPECT_TEXT(name, "");
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Cellar");
  EXPECT_TEXT(NodeText("/sys/user:1/password"), "secret34");
  char refused[] = "rss_Nothing=1";
  EXPECT_INT(do_RssVar_Parser(refused, '&', name, 0), KIOAPP_VAR_REFUSED);
  EXPECT_TEXT(name, "rss_Nothing");
}

/* The script is the one that calls_platform.c wrote: a line in the file "events" a run. */
static void CheckCommits(void) {
  char value[KIOAPP_VAR_SIZE] = "";
  remove(ScratchPath("events"));
  rssXmlData.exeflag = KIOAPP_SYNC_DEVICE;
  EXPECT_INT(do_RssVar_Commit(), 0);
  EXPECT_TEXT(ScratchText("events"), "ran\n");

  EXPECT_INT(setget_RssVar("rss_Act_CommitRssVars", value, KIOAPP_VAR_READ), KIOAPP_VAR_DONE);
  EXPECT_TEXT(ScratchText("events"), "ran\n");
  EXPECT_INT(alarm(0) > 0, 1);
  raise(SIGALRM);
  EXPECT_TEXT(ScratchText("events"), "ran\nran\n");
  signal(SIGALRM, SIG_DFL);
}

void CheckVariableCalls(void) {
  CheckNames();
  CheckSingleVariables();
  CheckBatch();
  CheckCommits();
}
