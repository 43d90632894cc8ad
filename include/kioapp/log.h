/* The library's log file.
 *
 * Messages whose level is at most `daemon_log_level` are appended to
 * "<daemon_log_path>/<daemon_log_header>_log.txt". When a message would bring the file to its size
 * limit, the file is first moved to the same name with ".old" appended. The library itself logs at
 * the levels 4 (failures), 5 (notable events), 6 (actions) and 7 (detail).
 *
 * Set the four variables before the first call into the library: the first message that is kept
 * fixes the file's name for the life of the process.
 */
#ifndef KIOAPP_LOG_H
#define KIOAPP_LOG_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* Directory of the log file, at most 63 characters. When empty, the first message fills it from the
 * store node "/zentrolinks/tempdirecory", or with "/tmp" when that node is empty too. The directory
 * must exist. */
extern KIOAPP_API char daemon_log_path[64];

/* Stem of the log file's name and prefix of console lines, at most 31 characters; "DL" when empty.
 */
extern KIOAPP_API char daemon_log_header[32];

/* Highest level that is kept; 5 at first. */
extern KIOAPP_API int daemon_log_level;

/* Size limit of the log file in KiB (1024 bytes), 250 at first; 0 or less turns the file off. */
extern KIOAPP_API int daemon_log_file_size_k;

/* Logs a printf-style message of at most 5119 characters; a longer one is cut.
 *
 * A message that begins a line is preceded by the uptime ("%ld: "); a message that does not end in
 * '\n' is continued by the next one. A message of level 0 goes to standard output as well. Every
 * failure is silent. The result carries no meaning.
 *
 *     logPrintf(5, "uplink is %s\n", up ? "up" : "down");
 */
KIOAPP_API int logPrintf(int level, const char *format, ...) KIOAPP_PRINTF(2, 3);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_LOG
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_LOG
#endif

#endif
