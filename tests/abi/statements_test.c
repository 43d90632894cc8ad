/* What the headers say of hosts that do not know: each statement is shown here. */
#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>

#include "expect.h"
#include "testing/memory_store.h"

/* A line for each write or removal, for each path that is read and for each command. */
enum { kNotesSize = 1 << 16 };
static char g_calls[kNotesSize];
static char g_reads[kNotesSize];
static char g_commands[kNotesSize];

static void AddNote(char *notes, const char *before, const char *middle, const char *behind) {
  const size_t size = strlen(notes);
  snprintf(notes + size, kNotesSize - size, "%s%s%s\n", before, middle, behind);
}

/* As system(): the library finds this one in the program. */
int system(const char *command) {
  AddNote(g_commands, command, "", "");
  return 0;
}

static void Note(enum StoreFunction function, const char *path, const char *text) {
  if (function == kXgetStr || function == kXgetInt) {
    AddNote(g_reads, path, "", "");
  } else if (function == kXdel) {
    AddNote(g_calls, "-", path, "");
  } else {
    AddNote(g_calls, path, "=", text);
  }
}

#define RADIO "/lan/wireless2.4:1"
static const char *const kDevice[][2] = {
    {"/zentrolinks/tempdirecory", "/tmp/none"},
    {"/zentrolinks/scriptdirecory", "/scripts"},
    {"/sys/friendlyname", "Factory name"},
    {"/sys/friendlyname_validate", "0,32,1"},
    {"/sys/user:1/password", "secret12"},
    {"/sys/routerenbl", "1"},
    {RADIO "/wlenbl", "1"},
    {RADIO "/wlschedule", "0"},
    {RADIO "/wirelessname", "Factory network"},
    {RADIO "/encryptionmode", "None"},
    {RADIO "/channel", "6"},
    {RADIO "/accesscontrol/wlacenbl", "1"},
    {RADIO "/accesscontrol/wlacmode", "1"},
    {RADIO "/accesscontrol/acrule:1/mac", "00:11:22:33:44:51"},
    {RADIO "/accesscontrol/acrule:2/mac", "00:11:22:33:44:52"},
};

static void Start(void) {
  ClearStore();
  for (size_t i = 0; i < sizeof(kDevice) / sizeof(kDevice[0]); ++i) {
    SetNode(kDevice[i][0], kDevice[i][1]);
  }
  g_calls[0] = g_reads[0] = g_commands[0] = '\0';
  g_store_behaviour.watch = Note;
  g_store_behaviour.result = 0;
}

static int Exchange(const char *name) {
  static char text[1024];
  DeleteNode(RADIO "/wlenbl"); /* no radio: the document needs none */
  snprintf(text, sizeof(text),
           "<root><specVersion><major>1</major><minor>1</minor></specVersion><Device>"
           "<DeviceName>%s</DeviceName><DevicePwd>secret12</DevicePwd><RouterEnbl>1</RouterEnbl>"
           "</Device></root>",
           name);
  return do_RssXml_Parser(text);
}

static unsigned int Apply(void) {
  char value[KIOAPP_VAR_SIZE] = "";
  return setget_RssVar("rss_Act_ApplyAllRssVars", value, KIOAPP_VAR_READ);
}

/* variables.h, init_RssVar: without it nothing is written. Runs first: the record is empty then. */
static void CheckApplyWithoutInit(void) {
  char value[KIOAPP_VAR_SIZE] = "Attic";
  Start();
  EXPECT_INT(set_RssVar("rss_DeviceName", value), 0);
  EXPECT_INT(Apply(), 0);
  EXPECT_TEXT(g_calls, "");

  char batch[] = "rss_DeviceName=Cellar";
  EXPECT_INT(do_RssVar_Parser(batch, '&', NULL, 1), 0);
  EXPECT_TEXT(g_calls, "");
}

/* variables.h, init_RssVar: the list of access rules. */
static void CheckRulesAreLost(void) {
  Start();
  init_RssVar();
  EXPECT_TEXT(g_calls, "");
  EXPECT_INT(rssXmlData.wlan[0].wlAcRuleNo, -1);
  EXPECT_INT(Apply(), 0);
  EXPECT_TEXT(g_calls, RADIO "/accesscontrol/wlacmode=0\n-" RADIO "/accesscontrol/acrule:2\n-" RADIO
                             "/accesscontrol/acrule:1\n/sys/factorydefault=0\n");

  /* Where access control is off, the list stays. */
  Start();
  SetNode(RADIO "/accesscontrol/wlacenbl", "0");
  init_RssVar();
  EXPECT_INT(Apply(), 0);
  EXPECT_TEXT(g_calls, "");
}

/* store.h: names come in several spellings. */
static void CheckLetterCase(void) {
  char value[KIOAPP_VAR_SIZE] = "";
  Start();
  EXPECT_INT(Exchange("Attic"), 1);
  EXPECT_INT(setget_RssVar("rss_DeviceType", value, KIOAPP_VAR_READ), 0);
  restore_XmlRssStatus(1);
  EXPECT_INT(strstr(g_reads, "/sys/DeviceType\n") != NULL, 1);
  EXPECT_INT(strstr(g_reads, "/sys/devicetype\n") != NULL, 1);
}

/* store.h: "#" is asked for by xget_int alone, and never written. */
static void CheckCount(void) {
  Start();
  init_RssVar();
  EXPECT_INT(Apply(), 0);
  EXPECT_INT(strstr(g_reads, "/accesscontrol/acrule#\n") != NULL, 1);
  EXPECT_INT(strstr(g_calls, "#") == NULL, 1);
}

/* store.h: a write that failed is not told. */
static void CheckFailedWrite(void) {
  Start();
  g_store_behaviour.result = -1;
  EXPECT_INT(Exchange("Cellar"), 1);
  EXPECT_INT(strstr(g_calls, "=Cellar\n") != NULL, 1);
  EXPECT_INT(rssXmlData.setResult, KIOAPP_RESULT_APPLIED);
}

/* platform.h and settings.h: which actions a commit runs, and which are the host's. */
static void CheckActions(void) {
  Start();
  EXPECT_INT(Exchange("Bath"), 1);
  const int mask = KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  EXPECT_INT(rssXmlData.exeflag, mask);
  g_commands[0] = '\0';
  EXPECT_INT(do_RssXml_Commit(), 0);
  EXPECT_TEXT(g_commands, "/scripts/device_resync.sh\n");
  EXPECT_INT(rssXmlData.exeflag, mask);

  g_commands[0] = '\0';
  EXPECT_INT(exe_ExternalCall(KIOAPP_SYNC_LEFT_TO_HOST), 0);
  EXPECT_TEXT(g_commands, "");
}

int main(void) {
  daemon_log_file_size_k = 0;
  CheckApplyWithoutInit();
  CheckRulesAreLost();
  CheckLetterCase();
  CheckCount();
  CheckFailedWrite();
  CheckActions();
  return ExpectStatus();
}
