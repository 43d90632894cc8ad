/* The calls of each room that are measured, each with what it needs and what it must have done. */
#include "scenarios.h"

#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>

#include "scene.h"
#include "testing/memory_store.h"
#include "testing/scratch.h"

static char *g_document = NULL;
static int g_rules = kDocumentRules;

/* Takes the rules behind the first ones of each radio out of a document. */
static void KeepRules(char *document, int rules) {
  static const char kBegin[] = "<AcRule>";
  static const char kEnd[] = "</AcRule>";
  static const char kRadioEnd[] = "</AccessControl>";
  int seen = 0;
  char *to = document;
  for (const char *from = document; *from != '\0';) {
    if (strncmp(from, kRadioEnd, strlen(kRadioEnd)) == 0) {
      seen = 0;
    }
    if (strncmp(from, kBegin, strlen(kBegin)) == 0 && ++seen > rules) {
      const char *const end = strstr(from, kEnd);
      if (end == NULL) {
        Stop("a rule has no end");
      }
      from = end + strlen(kEnd);
      from += strspn(from, " \n");
    } else {
      *to++ = *from++;
    }
  }
  *to = '\0';
}

void SetDocumentRules(int rules) { g_rules = rules; }

size_t DocumentSize(void) {
  char *const document = FullDocument();
  KeepRules(document, g_rules);
  return strlen(document);
}

static void PrepareExchange(void) {
  ResetDevice();
  g_document = FullDocument();
  KeepRules(g_document, g_rules);
}

static void RunExchange(void) {
  if (do_RssXml_Parser(g_document) != 1) {
    Stop("the document is refused");
  }
}

static void CheckExchange(void) {
  /* Of ten rules, eight are active and take two writes; the others take one. */
  if (StoreWrites() != 24 + 2 * g_rules * 18 / 10 || rssXmlData.wlan[1].wlAcRuleNo != g_rules) {
    Stop("the exchange did less than it should");
  }
}

static const char *g_value = NULL;

static void PrepareVariable(void) {
  ResetDevice();
  init_RssVar();
  g_value = NULL;
}

static void RunVariableRead(void) { g_value = getRssVar("rss_Wl5_WirelessName"); }

static void CheckVariableRead(void) {
  if (g_value == NULL || strcmp(g_value, "HomeNet 5G") != 0) {
    Stop("the variable is not read");
  }
}

/* A batch sets, verifies and applies; it goes deeper than any other call of the interface. */
static char g_batch[128];
static int g_batch_result = -1;

static void PrepareVariableBatch(void) {
  PrepareVariable();
  snprintf(g_batch, sizeof(g_batch), "rss_DeviceName=Cellar;rss_Wl5_WirelessName=Cellar 5G");
}

static void RunVariableBatch(void) {
  char name[KIOAPP_VAR_SIZE];
  g_batch_result = do_RssVar_Parser(g_batch, ';', name, 1);
}

static void CheckVariableBatch(void) {
  if (g_batch_result != KIOAPP_RESULT_APPLIED ||
      strcmp(DeviceText("/lan/wireless5:1/wirelessname"), "Cellar 5G") != 0) {
    Stop("the batch is not applied");
  }
}

/* The list is there already; the command that fetches it does nothing. Of its entries, as many as
 * are read, the last one fits. */
static void WriteFirmwareList(void) {
  enum { kEntries = 16 };
  FILE *const list = fopen(ScratchPath("AB12.xml"), "w");
  if (list == NULL) {
    Stop("the firmware list is not written");
  }
  fprintf(list,
          "<root>\n<specVersion><major>1</major><minor>0</minor></specVersion>\n<FirmwareList>\n");
  for (int i = 0; i < kEntries; ++i) {
    fprintf(
        list,
        "<Firmware><MacList><MAC>00:1A:2B:%02X:00:FF</MAC><MAC>00:1A:2B:3C:4D:%02X</MAC></MacList>"
        "<MatchList><Match>AB12_FW1.0.?*</Match></MatchList>"
        "<FwURL>/fw/AB12_FW1.0.%d.bin</FwURL><NotesURL>/fw/AB12.txt</NotesURL></Firmware>\n",
        (unsigned int)i, (unsigned int)i, i + 3);
  }
  fprintf(list, "</FirmwareList>\n</root>\n");
  if (ftell(list) > 4096) {
    Stop("the firmware list is longer than what is read of it");
  }
  fclose(list);
}

static void PrepareFirmwareSearch(void) {
  ResetDevice();
  xset_str("00:1A:2B:3C:4D:0F", "%s", "/fwupgradeinfo/devicemac");
  xset_str("AB12_FW1.0.2.bin", "%s", "/fwupgradeinfo/currfwfilename");
  xset_str(": \"$savefn\" \"$url\"", "%s", "/fwupgradeinfo/urlgetcmd");
  do_FwUpgradeAction(KIOAPP_FW_INIT);
  WriteFirmwareList();
}

static void RunFirmwareSearch(void) { do_FwUpgradeAction(KIOAPP_FW_SEARCH); }

static void CheckFirmwareSearch(void) {
  if (strstr(DeviceText("/fwupgradeinfo/newfw/fileurl"), "/fw/AB12_FW1.0.18.bin") == NULL) {
    Stop("no firmware is found");
  }
}

static unsigned char g_image[1024 * 1024];
static unsigned int g_crc = 0;

static void PrepareCrc(void) {
  for (size_t i = 0; i < sizeof(g_image); ++i) {
    g_image[i] = (unsigned char)(i * 7 + i / 256);
  }
}

static void RunCrc(void) { g_crc = crc32(0, g_image, sizeof(g_image)); }

static void CheckCrc(void) {
  if (g_crc != 0xA2DCF263U) {
    Stop("the CRC is wrong");
  }
}

static const char *g_digest = NULL;

static void PrepareDigest(void) { g_digest = NULL; }

static void RunDigest(void) { g_digest = MD5Encryption("6172192.168.1.100adminchange-me-soon"); }

static void CheckDigest(void) {
  if (g_digest == NULL || strcmp(g_digest, "a129983a1d400c2f55a654fdc4daf797") != 0) {
    Stop("the digest is wrong");
  }
}

static const char kClient[] = "192.168.1.100";
static char g_request[64];
static int g_login = -1;

static void PrepareLogin(void) {
  ResetDevice();
  clientAuthListDel(&clientauthinfo, NULL, NULL, KIOAPP_MATCH_ADDRESS);
  snprintf(g_request, sizeof(g_request), "kioAppKey= %s", generate_StarterKey(kClient));
}

static void RunLogin(void) { g_login = starter_auth_check(g_request, kClient, ""); }

static void CheckLogin(void) {
  if (g_login != 0 || clientauthinfo == NULL) {
    Stop("the client is not logged in");
  }
}

const struct Scenario kScenarios[] = {
    {"exchange", PrepareExchange, RunExchange, CheckExchange},
    {"variable_read", PrepareVariable, RunVariableRead, CheckVariableRead},
    {"variable_batch", PrepareVariableBatch, RunVariableBatch, CheckVariableBatch},
    {"firmware_search", PrepareFirmwareSearch, RunFirmwareSearch, CheckFirmwareSearch},
    {"crc_1mib", PrepareCrc, RunCrc, CheckCrc},
    {"md5", PrepareDigest, RunDigest, CheckDigest},
    {"login", PrepareLogin, RunLogin, CheckLogin},
};
const size_t kScenarioCount = sizeof(kScenarios) / sizeof(kScenarios[0]);
