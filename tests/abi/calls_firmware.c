/* Calls of the firmware functions, of the temporary documents and of the channel watch. */
#include <kioapp/firmware.h>
#include <kioapp/settings.h>
#include <stdio.h>
#include <string.h>

#include "calls.h"
#include "expect.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

static void CheckDocuments(void) {
  snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "%s", ScratchDirectory());
  EXPECT_INT(write_TmpXmlFile("small.xml", "width", "3", 0), 0);
  EXPECT_INT(write_TmpXmlFile("small.xml", "height", "4", 1), 0);
  EXPECT_TEXT(ScratchText("small.xml"),
              "<?xml version=\"1.0\" ?><root><width>3</width>\n<height>4</height></root>\n");
  EXPECT_INT(write_ResultXmlFile("small.xml", "result", "it's"), 0);
  EXPECT_TEXT(ScratchText("small.xml"),
              "<?xml version=\"1.0\" ?><root><result>it's</result></root>\n");
}

static void CheckChannels(void) {
  SetNode("/lan/wireless5:1/channel", "0");
  SetNode("/lan/wireless5:1/channelusing", "36");
  EXPECT_INT(checkWlanChannelUsing(), 1);
  EXPECT_INT(checkWlanChannelUsing(), 0);
}

#define ENTRY                                                                 \
  "<Firmware><MacList><MAC>*</MAC></MacList><FwURL>/AB12_FW1.0.8.bin</FwURL>" \
  "<NotesURL>/AB12.txt</NotesURL></Firmware>"

static void CheckList(void) {
  char list[] =
      "<root><specVersion><major>1</major><minor>0</minor></specVersion><FirmwareList>" ENTRY
      "</FirmwareList></root>";
  char file[128];
  char notes[128];
  char expected[256];
  SetNode("/fwupgradeinfo/devicemac", "00:11:22:33:44:55");
  SetNode("/fwupgradeinfo/currfwfilename", "AB12_FW1.0.2.bin");
  EXPECT_INT(do_FwXml_Parser(list, file, notes), KIOAPP_FW_LIST_MATCH);
  snprintf(expected, sizeof(expected), "%s/AB12_FW1.0.8.bin", get_FwServerWebSite());
  EXPECT_TEXT(file, expected);
  EXPECT_TEXT(fwXmlData.fileUrl, expected);
  EXPECT_TEXT(NodeText("/fwupgradeinfo/newfw/fileurl"), expected);
  snprintf(expected, sizeof(expected), "%s/AB12.txt", get_FwServerWebSite());
  EXPECT_TEXT(notes, expected);

  char entries[] = "<FirmwareList>" ENTRY "</FirmwareList>";
  EXPECT_INT(do_FwEntryList_Parser(entries, 0, KIOAPP_FW_LIST_FIRMWARE), KIOAPP_FW_LIST_MATCH);
  EXPECT_INT(do_FwEntryList_Parser(entries, 0, KIOAPP_FW_LIST_MACS), KIOAPP_FW_LIST_NO_MATCH);
  char entry[] = "<MatchList><Match>CD*</Match></MatchList>";
  EXPECT_INT(do_FwFirmware_Parser(entry, 0), KIOAPP_FW_LIST_NO_MATCH);
}

/* The download finds no server: the template is replaced by one that only begins. */
static void CheckActions(void) {
  SetNode("/zentrolinks/tempdirecory", ScratchDirectory());
  SetNode("/fwupgradeinfo/urlgetcmd", ": \"$savefn\" \"$url\"");
  do_FwUpgradeAction(KIOAPP_FW_INIT);
  EXPECT_TEXT(ScratchText("rsscheckfw.xml"),
              "<?xml version=\"1.0\" ?><root><result>0</result></root>\n");
  EXPECT_TEXT(NodeText("/fwupgradeinfo/newfw/fileurl"), NULL);
  do_FwUpgradeAction(KIOAPP_FW_SEARCH);
  EXPECT_TEXT(ScratchText("rsscheckfw.xml"),
              "<?xml version=\"1.0\" ?><root><result>-1</result></root>\n");
}

static void PutNumber(unsigned char *bytes, unsigned int number) {
  bytes[0] = (unsigned char)(number >> 24);
  bytes[1] = (unsigned char)(number >> 16);
  bytes[2] = (unsigned char)(number >> 8);
  bytes[3] = (unsigned char)number;
}

static void CheckImage(void) {
  static const unsigned char data[9] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  unsigned char image[64 + sizeof(data)] = {0};
  char message[512];
  EXPECT_INT(crc32(0, data, sizeof(data)) == 0xCBF43926U, 1);
  memcpy(image + 64, data, sizeof(data));
  PutNumber(image, 0x27051956);
  PutNumber(image + 24, 0xCBF43926U);
  PutNumber(image + 4, crc32(0, image, 64));
  FILE *const file = fopen(ScratchPath("image"), "wb");
  EXPECT_INT(file != NULL && fwrite(image, 1, sizeof(image), file) == sizeof(image), 1);
  if (file != NULL) {
    fclose(file);
  }
  EXPECT_INT(check(ScratchPath("image"), 0, sizeof(image), message), 1);
  EXPECT_INT(check(ScratchPath("image"), 0, sizeof(image) - 1, message), 0);
  EXPECT_INT(strstr(message, " has corrupted data!\n") != NULL, 1);
}

static void CheckFlash(void) {
  EXPECT_INT(getMTDPartSize("\"no such partition\""), 0);
  EXPECT_INT(mtd_write_firmware(), 0);
  /* No such tools on a machine that runs tests: the shell's status is handed on. */
  EXPECT_INT(mtd_write_bootloader("no such file", 0, 0) != 0, 1);
  EXPECT_INT(write_flash_kernel_version() != 0, 1);
}

void CheckFirmwareCalls(void) {
  ClearStore();
  CheckDocuments();
  CheckChannels();
  CheckList();
  CheckActions();
  CheckImage();
  CheckFlash();
}
