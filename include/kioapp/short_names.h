/* The names of the interface that other libraries and programs use as well.
 *
 * The other headers declare them by including this one, each its own. Define KIOAPP_NO_SHORT_NAMES
 * where a name is in the way: next to <zlib.h>, which has a crc32 too, or where `using namespace
 * std` gives `string` two meanings. The other headers then leave these names out, and a file that
 * needs one of them includes this header itself.
 *
 *     #define KIOAPP_NO_SHORT_NAMES
 *     #include <kioapp/kioapp.h>
 *     #include <zlib.h>
 *
 * The library exports the names in any case. kioapp.h tells what becomes of a program that has
 * something else by one of them.
 */

#include <stdint.h>

#include "kioapp/attributes.h"
#include "kioapp/features.h"

/* One of these is defined by the header that includes this one for its own names alone. */
#if !defined(KIOAPP_SHORT_NAMES_OF_AUTH) && !defined(KIOAPP_SHORT_NAMES_OF_FIRMWARE) && \
    !defined(KIOAPP_SHORT_NAMES_OF_LOG) && !defined(KIOAPP_SHORT_NAMES_OF_PLATFORM) &&  \
    !defined(KIOAPP_SHORT_NAMES_OF_TEXT) && !defined(KIOAPP_SHORT_NAMES_OF_VALIDATE) && \
    !defined(KIOAPP_SHORT_NAMES_OF_XML)
#define KIOAPP_SHORT_NAMES_OF_ALL
#endif

KIOAPP_BEGIN_DECLS

/* Who may come in (auth.h). */
#if KIOAPP_HAS_AUTH &&                                                             \
    (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_AUTH)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_AUTH)
#define KIOAPP_SHORT_NAMES_HAVE_AUTH

struct ClientAuthInfo;

/* Writes the list to the log at level 6, without passwords. */
KIOAPP_API void printList(struct ClientAuthInfo *head);

/* Writes the 16 bytes of the MD5 digest (RFC 1321) of a text without its terminator to `digest`.
 * `length` is not used. */
KIOAPP_API void MD5Digest(const char *text, unsigned int length, unsigned char *digest);

/* Writes two lower-case hexadecimal digits for each of `count` bytes and a terminator to `output`,
 * at most 32 digits: room for 33 characters is always enough. */
KIOAPP_API void Hex2String(const unsigned char *bytes, char *output, int count);

/* Where the functions below return their text. The next call of any of them overwrites it. */
extern KIOAPP_API char string[80];

#endif

/* Firmware (firmware.h). */
#if KIOAPP_HAS_FIRMWARE &&                                                             \
    (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_FIRMWARE)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_FIRMWARE)
#define KIOAPP_SHORT_NAMES_HAVE_FIRMWARE

/* Whether the `length` bytes at `offset` of a file are a firmware image (legacy U-Boot image, its
 * 64-byte header included) whose header and data are intact. Returns 1; or 0 with the reason, a
 * line of text, in `message`, which must hold the path and 60 characters more. The file may change
 * or shrink meanwhile. */
KIOAPP_API int check(const char *path, unsigned int offset, unsigned int length, char *message);

/* CRC-32 (reflected polynomial 0xEDB88320) of `length` bytes. `seed` is 0, or the CRC of what comes
 * before them.
 *
 * zlib has a function of this name. The library always calls its own; all else in the process, zlib
 * itself too, gets that of the library that is linked first. Link zlib first, `-lz -lkioapp`: it
 * keeps its own then, which takes a longer seed and answers a null pointer with 0. With the other
 * order zlib runs on this one, which gives it the right sums on x86-64; elsewhere nobody has tried.
 */
KIOAPP_API unsigned int crc32(unsigned int seed, const unsigned char *data, unsigned int length);

#endif

/* The log (log.h). */
#if (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_LOG)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_LOG)
#define KIOAPP_SHORT_NAMES_HAVE_LOG

/* Prints a printf-style message to standard output; returns what `vprintf` returns. */
KIOAPP_API int msgPrintf(const char *format, ...) KIOAPP_PRINTF(1, 2);

/* Takes the same arguments as `msgPrintf` and does nothing. Returns 0. */
KIOAPP_API int dbgPrintf(const char *format, ...) KIOAPP_PRINTF(1, 2);

#endif

/* Platform services (platform.h). */
#if (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_PLATFORM)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_PLATFORM)
#define KIOAPP_SHORT_NAMES_HAVE_PLATFORM

struct KioTimer;

/* Allocates a timer of `interval` ticks; the caller owns it and releases it with `free` when it is
 * not listed. `user_a` and `user_b` are kept for the caller. Returns null when memory is short. */
KIOAPP_API struct KioTimer *create_timer(unsigned int interval, void (*callback)(uintptr_t),
                                         uintptr_t arg, unsigned int user_a, unsigned int user_b);

/* Puts the timer at the front of the pending list; a timer with no ticks left is not listed, its
 * callback (when there is one) runs at once. A listed timer must stay alive. */
KIOAPP_API void add_timer(struct KioTimer *timer);

/* Size of a file in bytes; 0xFFFFFFFF when it cannot be read. */
KIOAPP_API unsigned int getFileSize(const char *path);

#endif

/* Text utilities (text.h). */
#if (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_TEXT)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_TEXT)
#define KIOAPP_SHORT_NAMES_HAVE_TEXT

/* Cuts the characters of `set` from the end of `text`, in place, and returns the first character of
 * `text` that is not in `set`. */
KIOAPP_API char *strip_chars(char *text, const char *set);

/* Strips spaces and tabs from both ends of `text`, in place. Returns `text`. */
KIOAPP_API char *trim(char *text);

/* Copies `src` to `dst`, which must hold it, and trims `dst`. Returns `dst`. */
KIOAPP_API char *trimTo(char *dst, const char *src);

#endif

/* Validators (validate.h). */
#if (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_VALIDATE)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_VALIDATE)
#define KIOAPP_SHORT_NAMES_HAVE_VALIDATE

/* 1 when min <= value <= max, else 0. */
KIOAPP_API int is_in_range(int value, int min, int max);

#endif

/* The XML scanning toolkit (xml.h). */
#if (defined(KIOAPP_SHORT_NAMES_OF_ALL) || defined(KIOAPP_SHORT_NAMES_OF_XML)) && \
    !defined(KIOAPP_SHORT_NAMES_HAVE_XML)
#define KIOAPP_SHORT_NAMES_HAVE_XML

/* First position in `haystack` where `needle` matches without regard to ASCII case, or null. An
 * empty needle gives null. */
KIOAPP_API char *strstri(const char *haystack, const char *needle);

#endif

KIOAPP_END_DECLS

#undef KIOAPP_SHORT_NAMES_OF_ALL
