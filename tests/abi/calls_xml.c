/* Calls of the XML scanning toolkit. */
#include <kioapp/xml.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "calls.h"
#include "expect.h"
#include "testing/memory_store.h"

static char g_lost[256];

static void KeepLostKey(const char *path, const char *key) {
  snprintf(g_lost, sizeof(g_lost), "%s|%s", path != NULL ? path : "(null)", key);
}

static void CheckTables(void) {
  const char *const *const tables[] = {DeviceTypeArray,   WlanEncrypTypeArray, WlanEncrypModeArray,
                                       HardwareTypeArray, WirelessTypeArray,   ConnTypeArray,
                                       ADslEncapModeArray};
  static const int kWords[] = {5, 6, 5, 6, 2, 4, 2};
  for (size_t i = 0; i < sizeof(kWords) / sizeof(kWords[0]); ++i) {
    /* An empty text ends the table when '_' follows it. */
    EXPECT_INT(memcmp(tables[i][kWords[i]], "\0_", 3), 0);
    EXPECT_INT(memcmp(tables[i][kWords[i] - 1], "\0_", 2) != 0, 1);
  }
  char word[] = "pppoe";
  char unknown[] = "PPP";
  EXPECT_INT(SearchKeyArray(word, ConnTypeArray), 2);
  EXPECT_TEXT(word, "PPPoE");
  EXPECT_INT(SearchKeyArray(unknown, ConnTypeArray), -1);
}

void CheckXmlCalls(void) {
  char text[] = "<a><Name>R&amp;D</Name><No>42</No><b><No>7</No></b></a>";
  char path[128] = "";
  char value[32] = "";
  int length = -1;
  int number = -1;

  EXPECT_INT(strstri("Hello World", "WORLD") != NULL, 1);
  EXPECT_TEXT(strstri("Hello World", "WORLD"), "World");
  EXPECT_TEXT(strstri("Hello", ""), NULL);

  EXPECT_INT(FindXmlKeyContain_(text, 0, "name", &length, 0) - text, 9);
  EXPECT_INT(length, 7);
  EXPECT_INT(FindXmlKeyContain_(text, 0, "name", &length, 1) - text, 3);
  EXPECT_INT(FindXmlKeyContain(text, 0, "no", &length) - text, 27);
  EXPECT_INT(length, 2);
  EXPECT_INT(SearchXmlKeyHeader(text, 0, "no") - text, 23);
  EXPECT_INT(FindXmlKeyContain(text, 0, "none", &length) == NULL, 1);

  XmlErrMsg_LostKey = KeepLostKey;
  EXPECT_INT(prepareXmlBlockData("top", text, 0, "b", path, &length) - text, 37);
  EXPECT_INT(length, 10);
  EXPECT_TEXT(path, "top/b");
  EXPECT_INT(prepareXmlBlockData("top", text, 0, "c", path, &length) == NULL, 1);
  EXPECT_TEXT(g_lost, "(null)|c");

  EXPECT_INT(GetXmlKeyStrValue_(text, 0, "name", value, sizeof(value)), 1);
  EXPECT_TEXT(value, "R&D");
  EXPECT_INT(GetXmlKeyIntValue_(text, 0, "no", &number), 1);
  EXPECT_INT(number, 42);
  EXPECT_INT(GetXmlKeyStrValue(text, 0, "top", "missing", value, sizeof(value)), 0);
  EXPECT_TEXT(value, "");
  EXPECT_TEXT(g_lost, "top|missing");
  EXPECT_INT(GetXmlKeyIntValue(text, 0, NULL, "gone", &number), 0);
  EXPECT_INT(number, 42);
  EXPECT_TEXT(g_lost, "(null)|gone");
  XmlErrMsg_LostKey = NULL;
  CheckTables();
}

void CheckStoreCalls(void) {
  char text[256] = "";
  int too_large = -1;
  ClearStore();
  SetNode("/text", "old");
  SetNode("/number", "5");

  EXPECT_INT(StrCmpWithXStr("old", "/text", 0), 0);
  EXPECT_INT(StrCmpWithXStr("new", "/text", 1), 1);
  EXPECT_TEXT(NodeText("/text"), "old");
  EXPECT_INT(StrCmpWithXStr("new", "/text", 0), 1);
  EXPECT_TEXT(NodeText("/text"), "new");
  EXPECT_INT(IntCmpWithXStr(5, "/number", 0), 0);
  EXPECT_INT(IntCmpWithXStr(6, "/number", 0), 1);
  EXPECT_TEXT(NodeText("/number"), "6");
  EXPECT_INT(IntMaxCmpWithXStr(9, "/number", 0, 8, &too_large), 0);
  EXPECT_INT(too_large, 1);
  EXPECT_INT(IntMaxCmpWithXStr(8, "/number", 0, 8, &too_large), 1);
  EXPECT_INT(too_large, 0);
  EXPECT_TEXT(NodeText("/number"), "8");
  EXPECT_TEXT(getXNode_(text, "/absent", "a<b", 1), "a&lt;b");
  EXPECT_TEXT(NodeText("/absent"), "a<b");
  EXPECT_TEXT(getXNode(text, "/text", NULL), "new");
}
