/* Validators: each judges one text and keeps nothing. */
#ifndef KIOAPP_VALIDATE_H
#define KIOAPP_VALIDATE_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* 1 for an IPv4 host address in dotted form: first number 1 to 223 but 127, last 1 to 255. Text
 * after the fourth number is not looked at. */
KIOAPP_API int is_Valid_IP(const char *text);

/* 1 for a netmask in dotted form: ones, then zeros; 0.0.0.0 and 255.255.255.255 included. */
KIOAPP_API int is_Valid_Netmask(const char *text);

/* 1 when both addresses and the mask are valid and the addresses lie in one subnet. */
KIOAPP_API int is_Valid_IP_CheckMask(const char *mask, const char *a, const char *b);

/* 1 for a WPA key: 8 to 63 characters, or 64 hexadecimal digits of upper case. */
KIOAPP_API int is_Valid_WpaPskKey(const char *key);

/* 1 for a WEP key of `n` (5 or 13) characters, or of 2 x `n` hexadecimal digits of upper case. */
KIOAPP_API int is_Valid_WepKey(const char *key, int n);

/* Judges `value` by `rule`, a text of fields between commas (a comma or a backslash within a field
 * is written with a backslash before it):
 *
 *     0,MAXLEN,MINLEN,ANYCHAR,ALLOW,RANGE,RANGE...    a text
 *     1,MAX,MIN                                       a number
 *
 * Returns 0 when the value is valid, else the KIOAPP_RESULT_ code (settings.h): 3 value missing,
 * 10 length out of range, 11 character not allowed, 20 above the maximum, 21 below the minimum.
 * A null value is missing (3). Without a rule (null), any non-empty value is valid.
 *
 *     validate_RssData("guest", "0,32,1")                        -> 0
 *     validate_RssData("a b", "0,63,1,0,1,0-9,a-z,A-Z")          -> 11
 *     validate_RssData("15", "1,14,1")                           -> 20
 */
KIOAPP_API int validate_RssData(const char *value, const char *rule);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_VALIDATE
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_VALIDATE
#endif

#endif
