/* The whole exchange on the target: the full document, on a device in factory state. */
#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "device.h"
#include "expect.h"
#include "scene.h"

static void ExpectNode(const char *path, const char *text) {
  ExpectText(path, 0, "the node", DeviceText(path), text);
}

static void WriteScript(const char *name) {
  FILE *const script = fopen(ScenePath(name), "w");
  EXPECT_INT(script != NULL, 1);
  if (script != NULL) {
    fprintf(script, "#!/bin/sh\necho %s >> %s/events\n", name, SceneDirectory());
    fclose(script);
  }
  EXPECT_INT(chmod(ScenePath(name), S_IRWXU), 0);
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
  EXPECT_TEXT(SceneText("rssset_result.xml"), expected);
}

int main(void) {
  snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", SceneDirectory());
  snprintf(daemon_log_header, sizeof(daemon_log_header), "target");
  daemon_log_level = 7;
  ResetDevice(SceneDirectory());
  WriteScript("uplink.sh");
  WriteScript("device_resync.sh");

  EXPECT_INT(do_RssXml_Parser(FullDocument()), 1);
  ExpectSettings();
  EXPECT_INT(DeviceWrites(), 168);
  const int everything = KIOAPP_SYNC_WAN | KIOAPP_SYNC_WLAN | KIOAPP_SYNC_WLAN_5G |
                         KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  EXPECT_INT(rssXmlData.exeflag, everything);
  ExpectResult(KIOAPP_RESULT_APPLIED, rssXmlData.exeWaitSec);
  EXPECT_INT(rssXmlData.exeWaitSec > 0, 1);
  EXPECT_INT(do_RssXml_Commit(), 0);
  EXPECT_TEXT(SceneText("events"), "uplink.sh\ndevice_resync.sh\n");
  EXPECT_INT(strstr(SceneText("target_log.txt"), " +- DeviceName='Upstairs & attic'\n") != NULL, 1);

  /* Sent again, it changes nothing but the modes of access control, which are always written. */
  const int writes = DeviceWrites();
  EXPECT_INT(do_RssXml_Parser(FullDocument()), 1);
  EXPECT_INT(DeviceWrites() - writes, 2);
  ExpectSettings();

  RemoveScene();
  return ExpectStatus();
}
