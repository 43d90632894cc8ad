/* What the library holds: 1 where it is there, 0 where the build left it out. The headers declare
 * nothing of what is not there, and those of a part that is not there are not installed.
 *
 * An installed copy of this file tells what the library beside it holds. */
#ifndef KIOAPP_FEATURES_H
#define KIOAPP_FEATURES_H

/* Macros, so that the preprocessor can ask. NOLINTBEGIN(cppcoreguidelines-macro-usage) */

/* The settings one by one: variables.h. */
#ifndef KIOAPP_HAS_VARIABLES
#define KIOAPP_HAS_VARIABLES 1
#endif

/* The firmware list, upgrades and the check of images: firmware.h. */
#ifndef KIOAPP_HAS_FIRMWARE
#define KIOAPP_HAS_FIRMWARE 1
#endif

/* The key handshake and the list of clients: auth.h. */
#ifndef KIOAPP_HAS_AUTH
#define KIOAPP_HAS_AUTH 1
#endif

/* The dump of the record: `dump_RssXmlData` of settings.h. */
#ifndef KIOAPP_HAS_DUMP
#define KIOAPP_HAS_DUMP 1
#endif

/* NOLINTEND(cppcoreguidelines-macro-usage) */

#endif
