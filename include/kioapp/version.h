/* The version of the interface, of these headers and of the library that is loaded. */
#ifndef KIOAPP_VERSION_H
#define KIOAPP_VERSION_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* NOLINTBEGIN(cppcoreguidelines-macro-usage): for C, too. */

/* Major version of these headers. */
#define KIOAPP_VERSION_MAJOR 1
/* Minor version of these headers. */
#define KIOAPP_VERSION_MINOR 2
/* Patch of these headers. */
#define KIOAPP_VERSION_PATCH 3

/* Version of the library, "b1.2.3a": a letter, major, minor and patch, a letter. */
KIOAPP_API const char *starterLibVersion(void);

/* Not 0 when the library that is loaded can serve what was compiled with these headers: when its
 * major version is theirs, and minor and patch are not below theirs.
 *
 *     if (!KIOAPP_CHECK_VERSION()) {
 *       fprintf(stderr, "libkioapp is %s, too old or too new\n", starterLibVersion());
 *     }
 */
#define KIOAPP_CHECK_VERSION()                                                         \
  KioappServesVersion(starterLibVersion(), KIOAPP_VERSION_MAJOR, KIOAPP_VERSION_MINOR, \
                      KIOAPP_VERSION_PATCH)

/* NOLINTEND(cppcoreguidelines-macro-usage) */

/* What KIOAPP_CHECK_VERSION does for any version, told by a text as above. */
static inline int KioappServesVersion(const char *text, int major, int minor, int patch) {
  int numbers[3] = {-1, -1, -1};
  int i = 0;
  for (; i < 3; ++i) {
    /* A letter or a point before each number. */
    if (*text++ == '\0') {
      return 0;
    }
    for (; *text >= '0' && *text <= '9'; ++text) {
      numbers[i] = (numbers[i] < 0 ? 0 : numbers[i] * 10) + (*text - '0');
    }
  }
  return numbers[0] == major &&
         (numbers[1] > minor || (numbers[1] == minor && numbers[2] >= patch));
}

KIOAPP_END_DECLS

#endif
