/* The settings exchange: a settings document in, a result document out, actions on commit.
 *
 *     int applied = do_RssXml_Parser(document);  // verifies, applies, writes the result document
 *     send_file_to_app("<tmpPath>/rssset_result.xml");
 *     if (applied) do_RssXml_Commit();           // runs the resync actions
 *
 * The result document is the file "rssset_result.xml" in the directory `rssXmlData.tmpPath`:
 *
 *     <?xml version="1.0" ?>
 *     <root>
 *      <RssSetResult>0</RssSetResult>
 *      <RssSetMsg></RssSetMsg>
 *      <RssGetWaitSec>20</RssGetWaitSec>
 *     </root>
 *
 * RssSetResult is a KIOAPP_RESULT_ code; RssSetMsg names the element at fault
 * ("Device/DeviceName"); RssGetWaitSec is the number of seconds to wait before asking again, 0
 * unless the code is 0.
 */
#ifndef KIOAPP_SETTINGS_H
#define KIOAPP_SETTINGS_H

#include "kioapp/attributes.h"
#include "kioapp/features.h"
#include "kioapp/record.h"

KIOAPP_BEGIN_DECLS

/* Results of an exchange, as the app is told. */
enum {
  KIOAPP_RESULT_APPLIED = 0,          /* the settings are in the store */
  KIOAPP_RESULT_VERSION_MISMATCH = 1, /* document and device differ in the format version */
  KIOAPP_RESULT_MISSING_ELEMENT = 2,  /* a required element is not there */
  KIOAPP_RESULT_INVALID_VALUE = 3,    /* a value is of no use, or must not be changed */
  KIOAPP_RESULT_BAD_LENGTH = 10,      /* a text is too short or too long for its rule */
  KIOAPP_RESULT_BAD_CHARACTER = 11,   /* a text holds a character that its rule does not allow */
  KIOAPP_RESULT_ABOVE_MAXIMUM = 20,   /* a number is above the maximum of its rule */
  KIOAPP_RESULT_BELOW_MINIMUM = 21    /* a number is below the minimum of its rule */
};

/* Runs one exchange over the settings document `text`: reads it into the record, verifies every
 * value, writes what differs into the store and writes the result document.
 *
 * `text` is a writable NUL-terminated document; it is cut at the end of its root element. Returns 1
 * when the settings were applied, 0 otherwise. A text without a root element returns 0 and leaves
 * an earlier result document as it was. A refused exchange leaves in the store what was written
 * before the refusal: a host that wants all or nothing wraps the call in a transaction. */
KIOAPP_API int do_RssXml_Parser(char *text);

/* The same for settings copied from another access point: the device's own name, password, router
 * mode and uplink are neither read nor changed. */
KIOAPP_API int do_RssXml_Parser_for_ApCloning(char *text);

/* The body of both: runs in the mode that `rssXmlData.apCloningOnly` says. */
KIOAPP_API int do_RssXml_Parser_(char *text);

/* Reads the version element `key` inside `block` (`len` characters; 0 or less: to the end of the
 * text) into `out`. `parentPath` may be null. Returns 1, or 0 when an element is missing, which has
 * then been reported through `XmlErrMsg_LostKey`. */
KIOAPP_API int do_XmlSpecVersion_Parser(const char *parentPath, char *block, int len,
                                        RssSpecVersion *out, const char *key);

/* Reads the provider element `key` ("DSL" or "APN") inside `block` into `isp`. Result as above. */
KIOAPP_API int do_RssISP_Parser(const char *parentPath, char *block, int len, RssIsp *isp,
                                const char *key);

/* Reads the element "ExtenderSite" inside `block` into `site`. Result as above. */
KIOAPP_API int do_RssExtender_Parser(const char *parentPath, char *block, int len,
                                     RssExtenderSite *site);

/* Fills the record from the store: capabilities, paths and validation rules, and with `full` not 0
 * every current setting as well. */
KIOAPP_API void restore_XmlRssStatus(int full);

#if KIOAPP_HAS_DUMP
/* Writes the record to the log at level 6, passwords and keys included. */
KIOAPP_API void dump_RssXmlData(void);
#endif

/* Verifies the record. Returns 1 when it may be applied; otherwise writes the result document for
 * the first fault found and returns 0. */
KIOAPP_API int Verify_RssXml(void);

/* Writes the verified record into the store, each node only where it differs, and sets the restart
 * and save flags. Returns 1, or 0 when a change was refused (the result document is then written;
 * nodes written before it stay). */
KIOAPP_API int Apply_RssXmlToDevice(void);

/* Writes the result document and keeps code and message in the record. `message` is
 * placed in the document as it is. Returns the status of the last shell command. */
KIOAPP_API int write_RssXml_ResultXml(int code, const char *message, int waitSec);

/* Writes the result document with the message "path/key", or "key" when `path` is null or empty, at
 * most 127 characters, and the waiting time 0. */
KIOAPP_API void write_RssXml_KeyResult(const char *path, const char *key, int code);

/* The same with KIOAPP_RESULT_INVALID_VALUE. */
KIOAPP_API void write_RssXml_VerifyError(const char *path, const char *key);

/* The same with KIOAPP_RESULT_MISSING_ELEMENT. */
KIOAPP_API void write_RssXml_LostKeyError(const char *path, const char *key);

/* Works out from the restart flags which actions a commit runs (`exeflag`) and how long the app is
 * to wait (`exeWaitSec`). */
KIOAPP_API void calc_RssExeFlag(void);

/* Runs the pending actions. A host learns which these are before the call: they are
 *
 *     rssXmlData.exeflag != 0 ? rssXmlData.exeflag : rssXmlData.pre_exeflag
 *
 * and those in KIOAPP_SYNC_LEFT_TO_HOST (platform.h) it does itself afterwards. The call changes
 * nothing of `exeflag` and does not tell of a script that failed. Call it after the result document
 * has been delivered, and only when the exchange was accepted: behind a refused one it runs the
 * actions of an earlier exchange once more. Returns 0 when there was nothing to run, else what
 * `exe_ExternalCall` returned. */
KIOAPP_API unsigned int do_RssXml_Commit(void);

/* The same; with `full` not 0, the device resync and the saving of the configuration run in any
 * case. */
KIOAPP_API unsigned int do_RssXml_Commit_for_ApCloning(int full);

/* Writes a small document of one level into the temporary directory, an element a call: the first
 * call begins the file, that with `closing` not 0 ends it, and the next one begins a new file.
 *
 *     write_TmpXmlFile("size.xml", "width", "3", 0);
 *     write_TmpXmlFile("size.xml", "height", "4", 1);
 *
 *     <?xml version="1.0" ?><root><width>3</width>
 *     <height>4</height></root>
 *
 * The element is written by a shell command of at most 255 characters, what is longer is cut;
 * `value` is not encoded for XML. Returns the status of the command. */
KIOAPP_API int write_TmpXmlFile(const char *fileName, const char *tag, const char *value,
                                int closing);

/* The same with `closing` set: a document of one element. */
KIOAPP_API int write_ResultXmlFile(const char *fileName, const char *tag, const char *value);

/* Returns 1 when a radio that chooses its channel itself uses another one than at the last call,
 * else 0. Meant to be called every now and then. */
KIOAPP_API int checkWlanChannelUsing(void);

KIOAPP_END_DECLS

#endif
