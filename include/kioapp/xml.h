/* The XML scanning toolkit.
 *
 * No tree is built: an element is found by looking for its tag in the raw text. A block is a
 * pointer to an element's content and a length; a length of 0 or less means "to the end of the
 * text". Tag names match without regard to case; the tag must be written without attributes or
 * blanks inside. Nesting is not seen: the first tag in the block wins, wherever it lies.
 */
#ifndef KIOAPP_XML_H
#define KIOAPP_XML_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* Keyword tables. The code of a word is its index. Each ends with the entry "\0_": an empty text
 * followed by '_' (an ordinary empty text is a word). */

/* Kinds of devices. */
extern KIOAPP_API const char *const DeviceTypeArray[];
/* Ciphers of a radio. */
extern KIOAPP_API const char *const WlanEncrypTypeArray[];
/* How a radio's network is encrypted. */
extern KIOAPP_API const char *const WlanEncrypModeArray[];
/* What the uplink runs over. */
extern KIOAPP_API const char *const HardwareTypeArray[];
/* Bands of an upstream network. */
extern KIOAPP_API const char *const WirelessTypeArray[];
/* How the uplink gets its address. */
extern KIOAPP_API const char *const ConnTypeArray[];
/* Encapsulations of a DSL circuit. */
extern KIOAPP_API const char *const ADslEncapModeArray[];

/* Called with the block's path (or null) and the element's name when a required element is missing.
 * Null at first; a document parser installs its own. */
extern KIOAPP_API void (*XmlErrMsg_LostKey)(const char *path, const char *key);

/* Finds the element `key` in a block. Returns its content and sets `*outLen` (which may be null) to
 * the content's length; an empty element (<key/> or <key />) returns the position of its tag and
 * length 0. With `headerOnly` not 0 the position of the tag is returned in any case, a closing tag
 * need not be there, and `*outLen` keeps its value. Null and length 0 when there is no such element
 * or its closing tag is missing; null alone for a null `text` or `key`. */
KIOAPP_API char *FindXmlKeyContain_(char *text, int len, const char *key, int *outLen,
                                    int headerOnly);

/* FindXmlKeyContain_ for the content. */
KIOAPP_API char *FindXmlKeyContain(char *text, int len, const char *key, int *outLen);

/* FindXmlKeyContain_ for the position of the opening tag. */
KIOAPP_API char *SearchXmlKeyHeader(char *text, int len, const char *key);

/* Finds the block `key` and writes its path, "parentPath/key" or "key", of at most 127 characters
 * to `outPath` (128 bytes). Returns the block's content and sets `*outLen` as FindXmlKeyContain
 * does. A missing block is reported through `XmlErrMsg_LostKey` with a null path, leaves `outPath`
 * as it was and returns null. */
KIOAPP_API char *prepareXmlBlockData(const char *parentPath, char *text, int len, const char *key,
                                     char *outPath, int *outLen);

/* Reads the text of an element into `dst` of `cap` bytes: at most `cap` - 1 characters of the
 * document, entities decoded. Returns 1; or 0 when there is no such element, `dst` is then empty,
 * or for a null `block`, `key` or `dst`, which leaves `dst` as it was. */
KIOAPP_API int GetXmlKeyStrValue_(char *block, int len, const char *key, char *dst, int cap);

/* Reads the integer of an element; `*out` keeps its value when there is no such element. Returns 1
 * or 0. */
KIOAPP_API int GetXmlKeyIntValue_(char *block, int len, const char *key, int *out);

/* The same two for required elements: a missing one is reported through `XmlErrMsg_LostKey` with
 * `parentPath`. This one reads a text. */
KIOAPP_API int GetXmlKeyStrValue(char *block, int len, const char *parentPath, const char *key,
                                 char *dst, int cap);

/* This one reads an integer. */
KIOAPP_API int GetXmlKeyIntValue(char *block, int len, const char *parentPath, const char *key,
                                 int *out);

/* Index of `word` in a keyword table without regard to case, or -1. On a match the table's spelling
 * replaces `word`. A table of the caller's ends like those above; behind the terminator of an empty
 * word in it one more byte is looked at. */
KIOAPP_API int SearchKeyArray(char *word, const char *const table[]);

/* Compares `value` with the text of the store node `path`. Returns 0 when they are equal; else 1,
 * and writes `value` unless `compareOnly` is set. */
KIOAPP_API int StrCmpWithXStr(const char *value, const char *path, int compareOnly);

/* The same for an integer, compared with the number that the node's text begins with. */
KIOAPP_API int IntCmpWithXStr(int value, const char *path, int compareOnly);

/* The same with an upper bound: a different value above `max` sets `*outTooLarge` to 1, writes
 * nothing and returns 0. */
KIOAPP_API int IntMaxCmpWithXStr(int value, const char *path, int compareOnly, int max,
                                 int *outTooLarge);

/* Reads a store node into `dst` of 256 bytes, with the router's address and port filled in as
 * `strChgRssKeywords` does and, with `xmlEncode` not 0, encoded for XML. An empty node gets
 * `defaultText` first when that is not null. Returns `dst`. */
KIOAPP_API char *getXNode_(char *dst, const char *path, const char *defaultText, int xmlEncode);

/* getXNode_ without encoding. */
KIOAPP_API char *getXNode(char *dst, const char *path, const char *defaultText);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_XML
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_XML
#endif

#endif
