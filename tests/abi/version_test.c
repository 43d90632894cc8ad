/* KIOAPP_CHECK_VERSION against the library that is loaded, and against versions that are not. */
#include <kioapp/version.h>
#include <stdio.h>

#include "expect.h"

int main(void) {
  char own[32];
  snprintf(own, sizeof(own), "b%d.%d.%da", KIOAPP_VERSION_MAJOR, KIOAPP_VERSION_MINOR,
           KIOAPP_VERSION_PATCH);
  EXPECT_TEXT(starterLibVersion(), own);
  EXPECT_INT(KIOAPP_CHECK_VERSION(), 1);

  EXPECT_INT(KioappServesVersion("b1.2.3a", 1, 2, 3), 1);
  EXPECT_INT(KioappServesVersion("b1.2.4a", 1, 2, 3), 1);
  EXPECT_INT(KioappServesVersion("b1.3.0a", 1, 2, 3), 1);
  EXPECT_INT(KioappServesVersion("b1.10.0a", 1, 9, 7), 1);
  EXPECT_INT(KioappServesVersion("b1.2.2a", 1, 2, 3), 0);
  EXPECT_INT(KioappServesVersion("b1.1.9a", 1, 2, 3), 0);
  EXPECT_INT(KioappServesVersion("b2.2.3a", 1, 2, 3), 0);
  EXPECT_INT(KioappServesVersion("b0.9.9a", 1, 2, 3), 0);
  EXPECT_INT(KioappServesVersion("b1.2", 1, 2, 0), 0);
  EXPECT_INT(KioappServesVersion("b", 0, 0, 0), 0);
  EXPECT_INT(KioappServesVersion("", 0, 0, 0), 0);
  return ExpectStatus();
}
