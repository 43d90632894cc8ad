/* libkioapp: the router-side back end of a phone app.
 *
 * This header includes the whole public interface. Conventions that hold everywhere:
 *
 * - The interface is plain C. All names have C linkage; the headers compile as C99 and as C++.
 * - Texts are NUL-terminated byte strings. A field `char name[N + 1]` holds N characters and the
 *   terminator.
 * - The library is single-threaded and not reentrant: one call at a time, from one thread, and no
 *   call while a signal handler may enter the library.
 * - Texts that a function returns lie in the library's static buffers unless its comment says
 *   otherwise; the next call of the same function overwrites them. Nothing that the library returns
 *   is to be freed, but for what `create_timer` returns.
 * - The functions of settings.h that parse, verify and apply return 1 for success and 0 for
 *   failure. What went wrong is told to the app in the result document, never by the return value.
 *   Variables, firmware lists and clients have results of their own, which their headers list.
 * - Times are whole seconds since boot. The library goes by no other clock; the time of day only
 *   seeds session ids (auth.h).
 * - The library allocates no memory but for timers (`create_timer`) and for the clients that are
 *   logged in (auth.h).
 * - Null pointers stop no call. A null text is as good as an empty one. Through a null pointer
 *   nothing is written, and a function that returns the buffer or the text it was given returns
 *   null. Where a null pointer means something else, the comment of the function says so.
 * - The host supplies the configuration store (store.h). docs/store.md tells who reads and who
 *   writes each of its nodes.
 * - A build may leave out parts of the library; features.h tells which are there.
 * - Names that other libraries use too, such as `string` and `crc32`, stand in short_names.h, which
 *   the other headers leave out where KIOAPP_NO_SHORT_NAMES is defined.
 * - A program may have functions and data of its own by any name of the interface. The library then
 *   calls its own functions, and neither reads nor writes the program's data: it keeps to storage
 *   of its own, which the program cannot reach by that name. So declare the library's data, as
 *   these headers do, and do not define them.
 */
#ifndef KIOAPP_KIOAPP_H
#define KIOAPP_KIOAPP_H

#include "kioapp/features.h"
#include "kioapp/log.h"
#include "kioapp/platform.h"
#include "kioapp/record.h"
#include "kioapp/settings.h"
#include "kioapp/store.h"
#include "kioapp/text.h"
#include "kioapp/validate.h"
#include "kioapp/version.h"
#include "kioapp/xml.h"

#if KIOAPP_HAS_AUTH
#include "kioapp/auth.h"
#endif
#if KIOAPP_HAS_FIRMWARE
#include "kioapp/firmware.h"
#endif
#if KIOAPP_HAS_VARIABLES
#include "kioapp/variables.h"
#endif

#ifndef KIOAPP_NO_SHORT_NAMES
#include "kioapp/short_names.h"
#endif

#endif
