// Versions of the library and of its settings documents.
#include "kioapp/platform.h"

const char* starterLibVersion(void) { return "b1.2.3a"; }

const char* rssSpecVersion(void) { return "1.1"; }
