/* Text utilities. They work on the caller's NUL-terminated buffers and allocate nothing. */
#ifndef KIOAPP_TEXT_H
#define KIOAPP_TEXT_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* Copies `src` to `dst` with each occurrence of `key` replaced by `replacement`; a replacement is
 * not searched again. The buffers must not overlap and `dst` must hold the result: no length is
 * checked. An empty `key` copies unchanged. Returns `dst`. */
KIOAPP_API char *strChgKeyword(char *dst, const char *src, const char *key,
                               const char *replacement);

/* Replaces "$lanip" and "$rssport" in `text`, a buffer of 256 bytes, by the router's own address
 * and port from the store; the result is cut at 255 characters. Returns `text`.
 *
 *     "http://$lanip:$rssport/" -> "http://192.168.1.1:80/"
 */
KIOAPP_API char *strChgRssKeywords(char *text);

/* Compares at most `n` characters of `subject` with `pattern`, in which '?' stands for any one
 * character and '*' for all the rest. Returns 0 on a match, else the difference of the first
 * characters that differ. */
KIOAPP_API int strnWildcardCmp(const char *subject, const char *pattern, int n);

/* The same with a limit of 32767 characters. */
KIOAPP_API int strWildcardCmp(const char *subject, const char *pattern);

/* The four coders write to `dst` under a limit `n`. A text that reaches the limit is left without a
 * terminator: give `n` below the capacity and terminate. `n` below 1 or a null `src` gives an empty
 * text, a null `dst` returns null. Each returns `dst`. */

/* Decodes URL form ("%41", "+"): at most `n` characters are written. */
KIOAPP_API char *strncpy_HtmlDecode(char *dst, const char *src, int n);

/* Encodes to URL form. `n` is a budget of output characters; an escape that is begun with one unit
 * left writes two characters, one beyond the budget: `dst` must hold `n` + 1 characters. */
KIOAPP_API char *strncpy_HtmlEncode(char *dst, const char *src, int n);

/* Decodes XML entities; `n` counts the characters of `src`. An unknown entity is copied as it is.
 */
KIOAPP_API char *strncpy_XmlDecode(char *dst, const char *src, int n);

/* Encodes the five XML special characters; `n` counts the characters written, and an entity that
 * reaches the limit is cut short. */
KIOAPP_API char *strncpy_XmlEncode(char *dst, const char *src, int n);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_TEXT
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_TEXT
#endif

#endif
