/* A host that calls data of its own by the names of the library's: the library works, and leaves
 * them as they are. namesakes.c defines them. */
#include <kioapp/auth.h>
#include <kioapp/firmware.h>
#include <kioapp/log.h>
#include <kioapp/settings.h>
#include <stdio.h>
#include <string.h>

#include "device.h"
#include "expect.h"
#include "namesakes.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

static void CheckExchange(void) {
  char document[] =
      "<root><specVersion><major>1</major><minor>1</minor></specVersion><Device>"
      "<DeviceName>Kitchen</DeviceName><DevicePwd>secret12</DevicePwd><RouterEnbl>1</RouterEnbl>"
      "<UpLinkConnection><HardwareType>ethernet</HardwareType><ConnType>dhcp</ConnType>"
      "</UpLinkConnection></Device></root>";
  char incomplete[] =
      "<root><specVersion><major>1</major><minor>1</minor></specVersion><Device></Device></root>";
  StoreDevice();
  SetNode("/uplink/configurable", "1");
  SetNode("/uplink/hardwaresupport", "Ethernet");
  SetNode("/uplink/hardwaretype", "Ethernet");
  SetNode("/uplink/conntype", "PPPoE");
  EXPECT_INT(do_RssXml_Parser(document), 1);
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Kitchen");
  /* In the spelling of the library's table. */
  EXPECT_TEXT(NodeText("/uplink/conntype"), "DHCP");
  EXPECT_INT(strstr(ScratchText("rssset_result.xml"), "<RssSetResult>0<") != NULL, 1);

  /* The handler of missing elements is the library's. */
  EXPECT_INT(do_RssXml_Parser(incomplete), 0);
  EXPECT_INT(strstr(ScratchText("rssset_result.xml"), "<RssSetResult>2<") != NULL, 1);
}

static void CheckLogin(void) {
  char request[64];
  EXPECT_TEXT(MD5Encryption("abc"), "900150983cd24fb0d6963f7d28e17f72");
  snprintf(request, sizeof(request), "kioAppKey= %s", generate_StarterKey("10.1.1.2"));
  EXPECT_INT(check_StarterAuthIP("10.1.1.2", NULL), -1);
  EXPECT_INT(starter_auth_check(request, "10.1.1.2", ""), 0);
  EXPECT_INT(check_StarterAuthIP("10.1.1.2", NULL), 0);
}

static void CheckFirmwareList(void) {
  char list[] =
      "<root><specVersion><major>1</major><minor>0</minor></specVersion><FirmwareList><Firmware>"
      "<MacList><MAC>*</MAC></MacList><FwURL>/AB12_FW1.0.8.bin</FwURL>"
      "<NotesURL>/AB12.txt</NotesURL></Firmware></FirmwareList></root>";
  char file[128];
  char notes[128];
  SetNode("/fwupgradeinfo/devicemac", "00:11:22:33:44:55");
  SetNode("/fwupgradeinfo/currfwfilename", "AB12_FW1.0.2.bin");
  EXPECT_INT(do_FwXml_Parser(list, file, notes), KIOAPP_FW_LIST_MATCH);
  EXPECT_INT(strstr(file, "AB12_FW1.0.8.bin") != NULL, 1);
}

/* At the level 5 and in the place that the library starts with. */
static void CheckLog(void) {
  logPrintf(5, "kept\n");
  logPrintf(6, "dropped\n");
  const char *const log = ScratchText("DL_log.txt");
  EXPECT_INT(log != NULL && strstr(log, "kept\n") != NULL, 1);
  EXPECT_INT(log != NULL && strstr(log, "dropped\n") == NULL, 1);
}

int main(void) {
  EXPECT_TEXT(ChangedNamesake(), NULL);
  CheckExchange();
  CheckLogin();
  CheckFirmwareList();
  CheckLog();
  EXPECT_TEXT(ChangedNamesake(), NULL);
  return ExpectStatus();
}
