/* minimal_host DIRECTORY < DOCUMENT: a complete host with its store in memory. The directory takes
 * the result document and the log, and holds the resync scripts. */
#include <kioapp/kioapp.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <strings.h>

enum { kNodes = 256, kSize = 256 };
static char g_paths[kNodes][kSize], g_texts[kNodes][kSize]; /* an empty text: no such node */

static char *FindText(const char *format, va_list arguments) {
  char path[kSize];
  vsnprintf(path, sizeof(path), format, arguments);
  for (int i = 0; i < kNodes; ++i) {
    if (g_paths[i][0] == '\0' || strcasecmp(g_paths[i], path) == 0) {
      snprintf(g_paths[i], kSize, "%s", path);
      return g_texts[i];
    }
  }
  abort();
}

#define STORE_FUNCTION(signature, result)           \
  int signature {                                   \
    va_list arguments;                              \
    va_start(arguments, format);                    \
    char *const text = FindText(format, arguments); \
    va_end(arguments);                              \
    return result;                                  \
  }
STORE_FUNCTION(xget_str(char *dst, const char *format, ...), snprintf(dst, kSize, "%s", text))
STORE_FUNCTION(xset_str(const char *src, const char *format, ...), snprintf(text, kSize, "%s", src))
STORE_FUNCTION(xget_int(const char *format, ...), *text != '\0' ? (int)strtol(text, NULL, 10) : -1)
STORE_FUNCTION(xset_int(int value, const char *format, ...), snprintf(text, kSize, "%d", value))
STORE_FUNCTION(xdel(const char *format, ...), *text = '\0') /* no node here has others below it */

int main(int argc, char **argv) {
  static char document[65536]; /* the library works in it */
  if (argc != 2 || fread(document, 1, sizeof(document) - 1, stdin) == 0) {
    fprintf(stderr, "usage: minimal_host DIRECTORY < DOCUMENT\n");
    return 2;
  }
  xset_str("Factory name", "/sys/friendlyname");
  xset_str(argv[1], "/zentrolinks/tempdirecory");
  xset_str(argv[1], "/zentrolinks/scriptdirecory");
  const int applied = do_RssXml_Parser(document);
  printf("%s/rssset_result.xml: %s, result %d, message '%s', wait %d s\n", rssXmlData.tmpPath,
         applied ? "applied" : "refused", rssXmlData.setResult, rssXmlData.setMsg,
         rssXmlData.exeWaitSec);
  if (applied) {
    do_RssXml_Commit(); /* once the app has the result document */
  }
  return applied ? 0 : 1;
}
