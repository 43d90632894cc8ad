/* The configuration store of the router, supplied by the host.
 *
 * The library reaches the device's settings only through these five functions. The host defines
 * them with C linkage and makes them visible to the library: an executable that is linked with the
 * library does so by itself, one that loads it with dlopen is linked with -rdynamic. Every path is
 * given printf-style: a format and its arguments. A node's text is addressed by a slash-separated
 * path such as "/sys/friendlyname"; a colon and a number after a name select that instance, counted
 * from 1 ("/lan/wireless2.4:1/channel"), and a trailing '#' stands for the number of instances
 * ("/lan/wireless2.4:1/accesscontrol/acrule#"), or the highest of their numbers where there are
 * gaps. `xget_int` gives it, and -1 when there is no instance; nothing is ever written there. A
 * store never reports more instances than it holds: an exchange that shortens a list deletes a node
 * for each number behind its new end, so that too large a number makes for as many calls.
 *
 * Letter case: the library spells the name of one node in several ways ("/sys/DeviceType" and
 * "/sys/devicetype"). A store compares names without regard to case.
 *
 * Failed writes: what `xset_str`, `xset_int` and `xdel` return is not looked at. An exchange goes
 * on after a failed write and is told as applied. A host that must know keeps in mind that one has
 * failed, and then undoes the exchange and answers the app itself, as `kiohost` does
 * (host/exchange.cc).
 *
 * Nodes: docs/store.md lists each of them, who reads it, who writes it and when, and what an absent
 * one is taken for. The library knows the device by them; on an empty store it applies next to
 * nothing.
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
