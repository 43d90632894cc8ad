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
 * - The host supplies the configuration store (store.h).
 */
#ifndef KIOAPP_KIOAPP_H
#define KIOAPP_KIOAPP_H

#include "kioapp/auth.h"
#include "kioapp/firmware.h"
#include "kioapp/log.h"
#include "kioapp/platform.h"
#include "kioapp/record.h"
#include "kioapp/settings.h"
#include "kioapp/store.h"
#include "kioapp/text.h"
#include "kioapp/validate.h"
#include "kioapp/variables.h"
#include "kioapp/xml.h"

#endif
