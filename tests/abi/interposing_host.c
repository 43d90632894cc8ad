/* A host that has functions of its own under names that the library uses too: each side keeps to
 * its own. */
#include <kioapp/settings.h>
#include <string.h>

#include "device.h"
#include "expect.h"
#include "testing/memory_store.h"

/* Exported by the program, so that the dynamic linker would prefer them for any name that the
 * library left to it. */
int trim(int value);
void check(void);
long crc32(void);
double strip_chars(double value);

static int g_calls = 0;

int trim(int value) {
  ++g_calls;
  return value + 1;
}

void check(void) { ++g_calls; }

long crc32(void) { return ++g_calls; }

double strip_chars(double value) {
  ++g_calls;
  return value;
}

int main(void) {
  /* Verification trims the keyword of the hardware type. */
  char document[] =
      "<root><specVersion><major>1</major><minor>1</minor></specVersion><Device>"
      "<DeviceName>Kitchen</DeviceName><DevicePwd>secret12</DevicePwd><RouterEnbl>1</RouterEnbl>"
      "<UpLinkConnection><HardwareType>\t Ethernet </HardwareType><ConnType> DHCP</ConnType>"
      "</UpLinkConnection></Device></root>";
  StoreDevice();
  SetNode("/uplink/configurable", "1");
  SetNode("/uplink/hardwaresupport", "Ethernet");
  SetNode("/uplink/hardwaretype", "Ethernet");
  SetNode("/uplink/conntype", "PPPoE");

  EXPECT_INT(do_RssXml_Parser(document), 1);
  EXPECT_TEXT(NodeText("/sys/friendlyname"), "Kitchen");
  EXPECT_TEXT(NodeText("/uplink/hardwaretype"), "Ethernet");
  EXPECT_TEXT(NodeText("/uplink/conntype"), "DHCP");
  EXPECT_INT(g_calls, 0);

  EXPECT_INT(trim(1), 2);
  check();
  EXPECT_INT(crc32(), 3);
  EXPECT_INT(strip_chars(0.5) == 0.5, 1);
  EXPECT_INT(g_calls, 4);
  return ExpectStatus();
}
