/* Where tests make their temporary directories, for C and C++. */
#ifndef KIO_TESTING_TEMPORARY_ROOT_H
#define KIO_TESTING_TEMPORARY_ROOT_H

#include <stdlib.h>
#include <string.h>

/* The end of a template for mkdtemp, behind the root. A macro, as C has no text constants. */
/* NOLINTNEXTLINE(cppcoreguidelines-macro-usage) */
#define KIO_TEMPORARY_NAME "/k.XXXXXX"

/* $TMPDIR, which ./test sets to a directory that it removes. It is /tmp when that is no short
 * absolute path: the library's commands hold the path and are cut at 127 characters. */
static inline const char *TemporaryRoot(void) {
  const char *const root = getenv("TMPDIR");
  return root != NULL && root[0] == '/' && strlen(root) < sizeof("/tmp/k.XXXX") ? root : "/tmp";
}

#endif
