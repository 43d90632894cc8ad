/* Data of a host's own under each of the names of the library's data: other types, other sizes.
 * With NAMESAKES_ZERO they hold zeros and lie one beside the other, as the library's data do at
 * first. */
#include "namesakes.h"

#include <string.h>

#ifdef NAMESAKES_ZERO
#define START 0
#else
#define START 0x35
#endif

/* Types and names stand where no parentheses can. NOLINTBEGIN(bugprone-macro-parentheses) */
#define NAMESAKE(type, name) \
  extern type name;          \
  type name = START
/* NOLINTEND(bugprone-macro-parentheses) */

NAMESAKE(int, string);
NAMESAKE(char, clientauthinfo);
NAMESAKE(char, cur_authinfo);
NAMESAKE(short, fwXmlData);
NAMESAKE(double, rssXmlData);
NAMESAKE(char, XmlErrMsg_LostKey);
NAMESAKE(char, daemon_log_path);
NAMESAKE(long, daemon_log_header);
NAMESAKE(char, daemon_log_level);
NAMESAKE(short, daemon_log_file_size_k);
NAMESAKE(char, DeviceTypeArray);
NAMESAKE(char, WlanEncrypTypeArray);
NAMESAKE(char, WlanEncrypModeArray);
NAMESAKE(char, HardwareTypeArray);
NAMESAKE(char, WirelessTypeArray);
NAMESAKE(char, ConnTypeArray);
NAMESAKE(char, ADslEncapModeArray);

#define CHECK_NAMESAKE(name) \
  if ((name) != START) {     \
    return #name;            \
  }

const char *ChangedNamesake(void) {
  CHECK_NAMESAKE(string)
  CHECK_NAMESAKE(clientauthinfo)
  CHECK_NAMESAKE(cur_authinfo)
  CHECK_NAMESAKE(fwXmlData)
  CHECK_NAMESAKE(rssXmlData)
  CHECK_NAMESAKE(XmlErrMsg_LostKey)
  CHECK_NAMESAKE(daemon_log_path)
  CHECK_NAMESAKE(daemon_log_header)
  CHECK_NAMESAKE(daemon_log_level)
  CHECK_NAMESAKE(daemon_log_file_size_k)
  CHECK_NAMESAKE(DeviceTypeArray)
  CHECK_NAMESAKE(WlanEncrypTypeArray)
  CHECK_NAMESAKE(WlanEncrypModeArray)
  CHECK_NAMESAKE(HardwareTypeArray)
  CHECK_NAMESAKE(WirelessTypeArray)
  CHECK_NAMESAKE(ConnTypeArray)
  CHECK_NAMESAKE(ADslEncapModeArray)
  return NULL;
}
