/* Where tests make their temporary directories, for C and C++. */
#ifndef KIO_TESTING_TEMPORARY_ROOT_H
#define KIO_TESTING_TEMPORARY_ROOT_H

#include <stdlib.h>
#include <string.h>

/* For mkdtemp: a name below the root. C has no other constant of text. */
/* NOLINTNEXTLINE(cppcoreguidelines-macro-usage) */
#define KIO_TEMPORARY_NAME "/k.XXXXXX"

/* $TMPDIR, which ./test sets to a directory that it removes, or /tmp. A longer path is not taken,
 * since the library's commands hold it. */
static inline const char *TemporaryRoot(void) {
  const char *const root = getenv("TMPDIR");
  return root != NULL && root[0] == '/' && strlen(root) < sizeof("/tmp/k.XXXX") ? root : "/tmp";
}

#endif
