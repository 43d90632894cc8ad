// In the place of dump.cc where the dump is left out. The name is not exported then.

#include "kioapp/settings.h"

void dump_RssXmlData(void) {}
