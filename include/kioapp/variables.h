/* The settings one by one: named variables over the settings record.
 *
 *     char value[KIOAPP_VAR_SIZE] = "Attic";
 *     init_RssVar();                              // the record as the device is now
 *     set_RssVar("rss_DeviceName", value);        // into the record only
 *     setget_RssVar("rss_Act_VerifyAllRssVars", value, KIOAPP_VAR_READ);
 *     setget_RssVar("rss_Act_ApplyAllRssVars", value, KIOAPP_VAR_READ);
 *     setget_RssVar("rss_Act_CommitRssVars", value, KIOAPP_VAR_READ);   // runs two seconds later
 *
 * A variable is named "rss_" and a name ("rss_Wl2_Acl_R03_MAC"), or by the path of its element in
 * the settings document ("/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:03/MAC"). Names match
 * in their exact case. Setting a variable changes the record and nothing else; actions verify the
 * record, write it to the store and commit.
 *
 * A value is a text buffer of at least KIOAPP_VAR_SIZE bytes, for input and output alike: reads,
 * refused actions and checks write to it. Values that are longer than their setting are cut.
 */
#ifndef KIOAPP_VARIABLES_H
#define KIOAPP_VARIABLES_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* Bytes of a value or a name buffer, terminator included. */
enum { KIOAPP_VAR_SIZE = 128 };

/* Modes of `setget_RssVar`, a bit set. */
enum {
  KIOAPP_VAR_READ = 0x001,    /* put the value into the buffer */
  KIOAPP_VAR_PATH = 0x100,    /* with READ: put the path of the store node there instead */
  KIOAPP_VAR_WRITE = 0x200,   /* check the value and store it into the record */
  KIOAPP_VAR_VALIDATE = 0x400 /* check the value only */
};

/* Results. Other results are those of `validate_RssData` or, of actions and batches, the result
 * codes of a settings exchange. */
enum {
  KIOAPP_VAR_DONE = 0,             /* read, checked or set */
  KIOAPP_VAR_NOT_CONFIGURABLE = 1, /* the section of the variable cannot be written */
  KIOAPP_VAR_REFUSED = 2,          /* unknown name, not in this mode, or a bad value */
  KIOAPP_VAR_MALFORMED = 3,        /* no "name=value" text, or a name of 32 characters and more */
  KIOAPP_VAR_UNKNOWN_WORD = 10     /* not a word of the variable's table */
};

/* Turns a variable name into its document path (`toPath` not 0) or a document path into its name.
 * Returns a buffer of 128 bytes that the next call overwrites, longer results being cut; null when
 * the text is null, blank, without the leading "rss_", of no known section, or has more levels than
 * a name can have. */
KIOAPP_API char *cvtRss_XmlPathVsVarName(const char *text, int toPath);

/* Serves a variable in a mode. A null `name` or `value` gives KIOAPP_VAR_REFUSED, here and below. A
 * read empties `value` first, except for actions ("rss_Act_..."), which run in any mode. The first
 * four characters of a name are not looked at. */
KIOAPP_API unsigned int setget_RssVar(const char *name, char *value, int mode);

/* Reads a variable, or with `wantPath` not 0 the path of its store node. */
KIOAPP_API int get_RssVar(const char *name, char *value, int wantPath);

/* Reads a variable into a buffer that the next call overwrites; "**ERROR**" when it cannot be read.
 */
KIOAPP_API char *getRssVar(const char *name);

/* Checks a value and stores it into the record. A refused value leaves the record as it was. */
KIOAPP_API unsigned int set_RssVar(const char *name, char *value);

/* Checks a value. A valid word of a keyword table gives KIOAPP_VAR_REFUSED here, an unknown one
 * KIOAPP_VAR_UNKNOWN_WORD. */
KIOAPP_API int validate_RssVar(const char *name, char *value);

/* The same for a text "name=value". What a check writes to the value is cut to the length that the
 * value has, unless it is longer than a value buffer anyway. */
KIOAPP_API int validate_RssVar2(char *text);

/* Begins a series: loads the record with the current state of the device. The first call of a
 * process also forgets the actions that an earlier exchange left pending.
 *
 * Until this or a document parser has loaded the record, the device counts as not configurable: the
 * action "ApplyAllRssVars" and a batch answer 0 and write nothing.
 *
 * It does not load the access rules. The number of a radio's rules is looked for where normally
 * none is, below the radio's node "configurable", and is -1 then; the access mode is 0. Where
 * access control is on, "ApplyAllRssVars", or a batch that is applied, then writes that mode and
 * deletes every access rule of the radio. Such a radio is for documents. */
KIOAPP_API void init_RssVar(void);

/* Sets each variable of a batch, "name=value" pairs with `separator` or line ends between them,
 * then verifies the record and, with `apply` not 0, writes it to the store; writes the result
 * document. Names are cut to 31 characters, values to 127. Stops at the first variable that is
 * refused and returns its code; otherwise returns the result code of the record. `nameOut` (128
 * bytes, or null) receives the name of the refused variable or the message of the result. */
KIOAPP_API int do_RssVar_Parser(char *text, char separator, char *nameOut, int apply);

/* Runs the pending actions, as `do_RssXml_Commit` does. The action "CommitRssVars" makes it the
 * handler of SIGALRM, two seconds ahead: the host lets that signal through only while it is in no
 * call of the library. */
KIOAPP_API unsigned int do_RssVar_Commit(void);

KIOAPP_END_DECLS

#endif
