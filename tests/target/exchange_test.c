/* The whole exchange on the target: the full document, on a device in factory state. */
#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "expect.h"
#include "scene.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

static void ExpectNode(const char *path, const char *text) {
  ExpectText(path, 0, "the node", DeviceText(path), text);
}

static void WriteScript(const char *name) {
  FILE *const script = fopen(ScratchPath(name), "w");
  EXPECT_INT(script != NULL, 1);
  if (script != NULL) {
    fprintf(script, "#!/bin/sh\necho %s >> %s/events\n", name, ScratchDirectory());
    fclose(script);
  }
  EXPECT_INT(chmod(ScratchPath(name), S_IRWXU), 0);
}

static void ExpectSettings(void) {
  ExpectNode("/sys/friendlyname", "Upstairs & attic");
  ExpectNode("/sys/user:1/password", "blue-kettle-17");
  ExpectNode("/sys/factorydefault", "0");
  ExpectNode("/uplink/hardwaretype", "VDSL");
  ExpectNode("/uplink/conntype", "PPPoE");
  ExpectNode("/uplink/loginusername", "line4711@provider.example");
  ExpectNode("/uplink/dsl/ispname", "Fjord Broadband");
  ExpectNode("/zentrolinks/easyroaminginfo", "site-a");
  ExpectNode("/lan/wireless2.4:1/wirelessname", "Attic");
  ExpectNode("/lan/wireless2.4:1/channel", "11");
  ExpectNode("/lan/wireless2.4:1/accesscontrol/wlacenbl", "1");
  ExpectNode("/lan/wireless2.4:1/accesscontrol/acrule:1/mac", "02:00:5E:24:00:01");
  ExpectNode("/lan/wireless2.4:1/accesscontrol/acrule:6/active", "1");
  ExpectNode("/lan/wireless5:1/accesscontrol/acrule:40/mac", "02:00:5E:50:00:28");
  EXPECT_INT(rssXmlData.specVer, 101);
  EXPECT_INT(rssXmlData.wlan[1].wlAcRuleNo, 40);
}

static void ExpectResult(int code, int wait) {
  char expected[256];
  snprintf(expected, sizeof(expected),
           "<?xml version=\"1.0\" ?>\n<root>\n <RssSetResult>%d</RssSetResult>\n"
           " <RssSetMsg></RssSetMsg>\n <RssGetWaitSec>%d</RssGetWaitSec>\n</root>\n",
           code, wait);
  EXPECT_TEXT(ScratchText("rssset_result.xml"), expected);
}

int main(void) {
  snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", ScratchDirectory());
  snprintf(daemon_log_header, sizeof(daemon_log_header), "target");
  daemon_log_level = 7;
  ResetDevice();
  WriteScript("uplink.sh");
  WriteScript("device_resync.sh");

  EXPECT_INT(do_RssXml_Parser(FullDocument()), 1);
  ExpectSettings();
  EXPECT_INT(StoreWrites(), 168);
  const int everything = KIOAPP_SYNC_WAN | KIOAPP_SYNC_WLAN | KIOAPP_SYNC_WLAN_5G |
                         KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  EXPECT_INT(rssXmlData.exeflag, everything);
  ExpectResult(KIOAPP_RESULT_APPLIED, rssXmlData.exeWaitSec);
  EXPECT_INT(rssXmlData.exeWaitSec > 0, 1);
  EXPECT_INT(do_RssXml_Commit(), 0);
  EXPECT_TEXT(ScratchText("events"), "uplink.sh\ndevice_resync.sh\n");
  const char *const log = ScratchText("target_log.txt");
  EXPECT_INT(log != NULL && strstr(log, " +- DeviceName='Upstairs & attic'\n") != NULL, 1);

  /* Sent again, it changes nothing but the modes of access control, which are always written. */
  const int writes = StoreWrites();
  EXPECT_INT(do_RssXml_Parser(FullDocument()), 1);
  EXPECT_INT(StoreWrites() - writes, 2);
  ExpectSettings();

  return ExpectStatus();
}
