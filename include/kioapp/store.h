/* The configuration store of the router, supplied by the host.
 *
 * The library reaches the device's settings only through these five functions. The host defines
 * them with C linkage and makes them visible to the library: an executable that is linked with the
 * library does so by itself, one that loads it with dlopen is linked with -rdynamic. Every path is
 * given printf-style: a format and its arguments. A node's text is addressed by a slash-separated
 * path such as "/sys/friendlyname"; a colon and a number after a name select that instance, counted
 * from 1 ("/lan/wireless2.4:1/channel"), and a trailing '#' stands for the number of instances
 * ("/lan/wireless2.4:1/accesscontrol/acrule#"). A store never reports more instances than it holds:
 * an exchange that shortens a list deletes a node for each number behind its new end, so that too
 * large a number makes for as many calls.
 *
 * The library calls them on the thread that called into the library, never from elsewhere.
 */
#ifndef KIOAPP_STORE_H
#define KIOAPP_STORE_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* Reads the text of a node into `dst`.
 *
 * An absent node gives an empty text, or leaves `dst` untouched: the library empties `dst` before
 * each call. `dst` holds 4096 bytes, so that a text has at most 4095 characters; a host must not
 * write more. It lies on the stack. When the bytes right behind it have changed, the library stops
 * the process by `abort`, with a line on standard error. The result is not looked at. */
int xget_str(char *dst, const char *format, ...) KIOAPP_PRINTF(2, 3);

/* Writes `value` as the text of a node, creating the node when it is absent. */
int xset_str(const char *value, const char *format, ...) KIOAPP_PRINTF(2, 3);

/* Returns the integer of a node, a negative number (-1) when the node is absent. */
int xget_int(const char *format, ...) KIOAPP_PRINTF(1, 2);

/* Writes `value` in decimal as the text of a node, creating the node when it is absent. */
int xset_int(int value, const char *format, ...) KIOAPP_PRINTF(2, 3);

/* Deletes a node and everything below it. Deleting an absent node is no error. */
int xdel(const char *format, ...) KIOAPP_PRINTF(1, 2);

KIOAPP_END_DECLS

#endif
