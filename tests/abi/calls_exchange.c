/* Calls of the settings exchange. */
#include <kioapp/log.h>
#include <kioapp/platform.h>
#include <kioapp/settings.h>
#include <kioapp/xml.h>
#include <stdio.h>
#include <string.h>

#include "calls.h"
#include "device.h"
#include "expect.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

/* The document that the last exchange wrote. */
static void ExpectResult(int code, const char *message, int wait) {
  char expected[512];
  snprintf(expected, sizeof(expected),
           "<?xml version=\"1.0\" ?>\n<root>\n <RssSetResult>%d</RssSetResult>\n"
           " <RssSetMsg>%s</RssSetMsg>\n <RssGetWaitSec>%d</RssGetWaitSec>\n</root>\n",
           code, message, wait);
  EXPECT_TEXT(ScratchText("rssset_result.xml"), expected);
}

/* A settings document for the device of StoreDevice. */
static char *Document(const char *name) {
  static char text[512];
  snprintf(text, sizeof(text),
           "<root><specVersion><major>1</major><minor>1</minor></specVersion><Device>"
           "<DeviceName>%s</DeviceName><DevicePwd>secret12</DevicePwd><RouterEnbl>1</RouterEnbl>"
           "</Device></root>",
           name);
  return text;
}

static void CheckParsers(void) {
  StoreDevice();
  EXPECT_INT(do_RssXml_Parser(Document("Kitchen")), 1);
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Kitchen");
  EXPECT_TEXT(NodeText("/sys/FactoryDefault"), "0");
  EXPECT_INT(rssXmlData.exeflag, KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH);
  ExpectResult(KIOAPP_RESULT_APPLIED, "", 5);

  EXPECT_INT(do_RssXml_Parser(Document("")), 0);
  ExpectResult(KIOAPP_RESULT_BAD_LENGTH, "Device/DeviceName", 0);

  /* Cloning leaves the device's own name alone. */
  EXPECT_INT(do_RssXml_Parser_for_ApCloning(Document("Bath")), 1);
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Kitchen");
  rssXmlData.apCloningOnly = 0;
  EXPECT_INT(do_RssXml_Parser_(Document("Bath")), 1);
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Bath");
}

static void CheckSectionParsers(void) {
  char version[] = "<specVersion><major>2</major><minor>5</minor></specVersion>";
  char uplink[] =
      "<DSL><CountryName>Norway</CountryName><IspName>Fjord</IspName></DSL>"
      "<ExtenderSite><Survey>1</Survey></ExtenderSite>";
  RssSpecVersion spec = {0, 0, "", 0};
  EXPECT_INT(do_XmlSpecVersion_Parser("top", version, 0, &spec, "specVersion"), 1);
  EXPECT_INT(spec.major, 2);
  EXPECT_INT(spec.minor, 5);
  EXPECT_INT(spec.combined, 205);
  EXPECT_TEXT(spec.path, "top/specVersion");

  RssIsp *const isp = &rssXmlData.upLink.dsl;
  EXPECT_INT(do_RssISP_Parser("top", uplink, 0, isp, "DSL"), 1);
  EXPECT_TEXT(isp->countryName, "Norway");
  EXPECT_TEXT(isp->ispName, "Fjord");
  EXPECT_TEXT(isp->path, "top/DSL");
  EXPECT_INT(do_RssISP_Parser("top", uplink, 0, isp, "APN"), 0);
  ExpectResult(KIOAPP_RESULT_MISSING_ELEMENT, "APN", 0);

  RssExtenderSite *const site = &rssXmlData.upLink.extenderSite;
  EXPECT_INT(do_RssExtender_Parser("top", uplink, 0, site), 1);
  EXPECT_INT(site->survey, 1);
  EXPECT_TEXT(site->path, "top/ExtenderSite");
}

static void CheckSteps(void) {
  StoreDevice();
  memset(&rssXmlData, 0, sizeof(rssXmlData));
  restore_XmlRssStatus(1);
  EXPECT_INT(rssXmlData.specVer, 101);
  EXPECT_TEXT(rssXmlData.deviceName, "Home router");
  EXPECT_TEXT(rssXmlData.tmpPath, ScratchDirectory());

  EXPECT_INT(Verify_RssXml(), 1);
  strcpy(rssXmlData.deviceName, "");
  EXPECT_INT(Verify_RssXml(), 0);
  ExpectResult(KIOAPP_RESULT_BAD_LENGTH, "Device/DeviceName", 0);

  strcpy(rssXmlData.deviceName, "Attic");
  EXPECT_INT(Apply_RssXmlToDevice(), 1);
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Attic");
  EXPECT_INT(rssXmlData.deviceRestart, 1);
  calc_RssExeFlag();
  EXPECT_INT(rssXmlData.exeflag, KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH);
  EXPECT_INT(rssXmlData.exeWaitSec, 5);
}

/* The record in the log: by its function, and at the end of an exchange. Where the dump is left out
 * there are the other lines alone. */
static void CheckDump(void) {
#if KIOAPP_HAS_DUMP
  daemon_log_level = 6;
  dump_RssXmlData();
  daemon_log_level = 5;
  const char *const own = ScratchText("abi_log.txt");
  EXPECT_INT(own != NULL && strstr(own, " +- DeviceName='Attic'\n") != NULL, 1);
#endif
  remove(ScratchPath("abi_log.txt"));
  daemon_log_level = 6;
  EXPECT_INT(do_RssXml_Parser(Document("Cellar")), 1);
  daemon_log_level = 5;
  const char *const log = ScratchText("abi_log.txt");
  EXPECT_INT(log != NULL && strstr(log, "<DeviceName>Cellar</DeviceName>") != NULL, 1);
  EXPECT_INT(log != NULL && strstr(log, " +- DeviceName='Cellar'\n") != NULL, KIOAPP_HAS_DUMP);
}

static void CheckResults(void) {
  EXPECT_INT(write_RssXml_ResultXml(42, "a 'quoted' text", 7), 0);
  ExpectResult(42, "a 'quoted' text", 7);
  EXPECT_INT(rssXmlData.setResult, 42);
  write_RssXml_KeyResult("Device", "Key", 20);
  ExpectResult(20, "Device/Key", 0);
  write_RssXml_VerifyError("Device", "Key");
  ExpectResult(KIOAPP_RESULT_INVALID_VALUE, "Device/Key", 0);
  write_RssXml_LostKeyError(NULL, "Key");
  ExpectResult(KIOAPP_RESULT_MISSING_ELEMENT, "Key", 0);
}

/* The script is the one that calls_platform.c wrote: a line in the file "events" a run. */
static void CheckCommits(void) {
  remove(ScratchPath("events"));
  rssXmlData.exeflag = KIOAPP_SYNC_DEVICE;
  EXPECT_INT(do_RssXml_Commit(), 0);
  EXPECT_TEXT(ScratchText("events"), "ran\n");

  rssXmlData.exeflag = 0;
  rssXmlData.pre_exeflag = 0;
  EXPECT_INT(do_RssXml_Commit_for_ApCloning(0), 0);
  EXPECT_TEXT(ScratchText("events"), "ran\n");
  EXPECT_INT(do_RssXml_Commit_for_ApCloning(1), 0);
  EXPECT_TEXT(ScratchText("events"), "ran\nran\n");
}

void CheckExchangeCalls(void) {
  CheckParsers();
  CheckSectionParsers();
  CheckSteps();
  CheckDump();
  CheckResults();
  CheckCommits();
}
