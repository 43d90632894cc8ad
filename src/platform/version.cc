// Versions of the library and of its settings documents.
#include "kioapp/version.h"

#include "kioapp/platform.h"

// Of the headers, of the build and of its packages.
static_assert(KIOAPP_VERSION_MAJOR == KIO_VERSION_MAJOR &&
                  KIOAPP_VERSION_MINOR == KIO_VERSION_MINOR &&
                  KIOAPP_VERSION_PATCH == KIO_VERSION_PATCH,
              "kioapp/version.h and the version in CMakeLists.txt differ");

const char* starterLibVersion(void) { return "b" KIO_VERSION "a"; }

const char* rssSpecVersion(void) { return "1.1"; }
