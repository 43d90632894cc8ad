/* minimal_host DIRECTORY < DOCUMENT: a complete host with its store in memory, for one document.
 * The directory takes the result document and the log, and holds the resync scripts. */
#include <kioapp/kioapp.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <strings.h>

/* The library knows the device by these nodes; docs/store.md describes them all. */
static const char *const kFactorySettings[][2] = {
    {"/sys/friendlyname", "Factory name"},
    {"/sys/friendlyname_validate", "0,32,1"}, /* a text of 1 to 32 characters */
    {"/sys/user:1/password", "change-me"},
    {"/sys/user:1/password_validate", "0,32,5"},
    {"/sys/routerenbl", "1"},
    {"/uplink/configurable", "1"}, /* or the app may not change the uplink */
    {"/uplink/hardwaresupport", "Ethernet"},
    {"/uplink/hardwaretype", "Ethernet"},
    {"/uplink/conntype", "DHCP"},
    {"/lan/wireless2.4:1/wlenbl", "1"}, /* or there is no such radio */
    {"/lan/wireless2.4:1/wlschedule", "0"},
    {"/lan/wireless2.4:1/wirelessname", "Factory network"},
    {"/lan/wireless2.4:1/wirelessname_validate", "0,32,1"},
    {"/lan/wireless2.4:1/encryptionkey_validate", "0,64,0"},
    {"/lan/wireless2.4:1/channellist", "0,1,6,11"},
    {"/lan/wireless2.4:1/accesscontrol/wlacenbl", "0"}, /* or it is locked */
};

enum { kNodes = 512, kSize = 256 };
typedef struct {
  char path[kSize];
  char text[kSize]; /* an empty one: no such node */
} Node;
static Node g_nodes[kNodes];

static Node *FindNode(const char *path) {
  for (Node *node = g_nodes; node < g_nodes + kNodes; ++node) {
    if (node->path[0] == '\0' || strcasecmp(node->path, path) == 0) {
      snprintf(node->path, kSize, "%s", path);
      return node;
    }
  }
  abort();
}

static int Write(Node *node, const char *text) {
  printf("writes %s\n", node->path);
  return snprintf(node->text, kSize, "%s", text);
}

static int WriteInt(Node *node, int value) {
  char text[16];
  snprintf(text, sizeof(text), "%d", value);
  return Write(node, text);
}

static int ReadInt(const Node *node) {
  return *node->text != '\0' ? (int)strtol(node->text, NULL, 10) : -1;
}

#define STORE_FUNCTION(signature, result)             \
  int signature {                                     \
    char path[kSize];                                 \
    va_list arguments;                                \
    va_start(arguments, format);                      \
    vsnprintf(path, sizeof(path), format, arguments); \
    va_end(arguments);                                \
    Node *const node = FindNode(path);                \
    return result;                                    \
  }
STORE_FUNCTION(xget_str(char *dst, const char *format, ...), snprintf(dst, kSize, "%s", node->text))
STORE_FUNCTION(xset_str(const char *src, const char *format, ...), Write(node, src))
STORE_FUNCTION(xget_int(const char *format, ...), ReadInt(node)) /* no "#" here: nothing to count */
STORE_FUNCTION(xset_int(int value, const char *format, ...), WriteInt(node, value))
STORE_FUNCTION(xdel(const char *format, ...), *node->text = '\0') /* nor what stands below it */

int main(int argc, char **argv) {
  static char document[65536]; /* the library works in it */
  if (argc != 2 || fread(document, 1, sizeof(document) - 1, stdin) == 0) {
    fprintf(stderr, "usage: minimal_host DIRECTORY < DOCUMENT\n");
    return 2;
  }
  for (size_t i = 0; i < sizeof(kFactorySettings) / sizeof(kFactorySettings[0]); ++i) {
    snprintf(FindNode(kFactorySettings[i][0])->text, kSize, "%s", kFactorySettings[i][1]);
  }
  snprintf(FindNode("/zentrolinks/tempdirecory")->text, kSize, "%s", argv[1]);
  snprintf(FindNode("/zentrolinks/scriptdirecory")->text, kSize, "%s", argv[1]);
  const int applied = do_RssXml_Parser(document);
  printf("%s/rssset_result.xml: %s, result %d, message '%s', wait %d s\n", rssXmlData.tmpPath,
         applied ? "applied" : "refused", rssXmlData.setResult, rssXmlData.setMsg,
         rssXmlData.exeWaitSec);
  if (applied) {
    fflush(stdout);     /* the scripts write there, too */
    do_RssXml_Commit(); /* once the app has the result document */
  }
  return applied ? 0 : 1;
}
