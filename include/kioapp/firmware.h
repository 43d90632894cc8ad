/* Firmware: finding newer firmware, fetching it, checking an image and the flash helpers.
 *
 *     do_FwUpgradeAction(KIOAPP_FW_SEARCH);     // fetches the firmware list: newer firmware?
 *     do_FwUpgradeAction(KIOAPP_FW_DOWNLOAD);   // begins to fetch the image in the background
 *     do_FwUpgradeAction(KIOAPP_FW_REPORT);     // again and again: 3 while it runs, then 4
 *     do_FwUpgradeAction(KIOAPP_FW_UPGRADE);    // announces the upgrade
 *     if (check(image, 0, size, message)) { ... }  // the host writes it to flash
 *
 * Each action rewrites the status document, the file "rsscheckfw.xml" in the temporary directory,
 * which the app reads:
 *
 *     <?xml version="1.0" ?><root><fwsize>2.50 M</fwsize>
 *     <fwver>1.0.8</fwver>
 *     <result>4</result></root>
 *
 * "result" is a KIOAPP_FW_ status; "fwsize" and "fwver" are there from status 2 on, and a "time" in
 * seconds after an announcement.
 */
#ifndef KIOAPP_FIRMWARE_H
#define KIOAPP_FIRMWARE_H

#include "kioapp/attributes.h"
#include "kioapp/record.h"

KIOAPP_BEGIN_DECLS

/* Actions: the characters that the app sends. */
enum {
  KIOAPP_FW_INIT = '0',     /* at any time: removes the files and forgets what was found */
  KIOAPP_FW_SEARCH = '1',   /* at status 0 */
  KIOAPP_FW_DOWNLOAD = '2', /* at status 2 */
  KIOAPP_FW_UPGRADE = '4',  /* at status 4 */
  KIOAPP_FW_REPORT = '9'    /* at any time: only writes the status document */
};

/* Status of the upgrade. */
enum {
  KIOAPP_FW_IDLE = 0,           /* nothing has been looked for */
  KIOAPP_FW_NONE_NEWER = 1,     /* the list has nothing newer for this router */
  KIOAPP_FW_FOUND = 2,          /* its release notes are being fetched */
  KIOAPP_FW_DOWNLOADING = 3,    /* the image is being fetched */
  KIOAPP_FW_DOWNLOADED = 4,     /* the image is there */
  KIOAPP_FW_ANNOUNCED = 5,      /* the upgrade has been announced */
  KIOAPP_FW_NO_LIST = -1,       /* not to be had, or not valid */
  KIOAPP_FW_NOT_ANNOUNCED = -2, /* announcing the upgrade failed */
  KIOAPP_FW_UNKNOWN_ACTION = -3 /* in the status document alone */
};

/* What matching an entry or a list leads to. */
enum {
  KIOAPP_FW_LIST_ERROR = 0,    /* the search ends */
  KIOAPP_FW_LIST_NO_MATCH = 1, /* it does not fit this router */
  KIOAPP_FW_LIST_MATCH = 2     /* it fits */
};

/* Kinds of lists: what they are made of, and what an item is compared with. */
enum {
  KIOAPP_FW_LIST_FIRMWARE = 0, /* "Firmware" of "FirmwareList": do_FwFirmware_Parser */
  KIOAPP_FW_LIST_MAC = 1,      /* "MAC" of "MacList": the device's MAC */
  KIOAPP_FW_LIST_MACS = 2,     /* "MACs" of "MacList", from "Start" to "End": the device's MAC */
  KIOAPP_FW_LIST_FILE_NAME = 3 /* "Match" of "MatchList": the running firmware's file name */
};

/* What the last firmware list gave. */
typedef struct {
  RssSpecVersion specVersion; /* of the list's format */
  char fileUrl[128];          /* address of the firmware chosen */
  char notesUrl[128];         /* address of its release notes */
  char deviceMac[18];         /* of this router, as in the store */
  char currFileName[130];     /* file name of the running firmware, as in the store */
} FwXmlData;

/* What the last firmware list gave. */
extern KIOAPP_API FwXmlData fwXmlData;

/* Base URL of the firmware server, without a slash at its end: a constant of the build. */
KIOAPP_API const char *get_FwServerWebSite(void);

/* Looks in a firmware list for the first entry that fits this router. `document` is writable and
 * NUL-terminated, and is cut at the end of its root element. Returns KIOAPP_FW_LIST_MATCH when it
 * names another file than the one that runs; the addresses are then in `fwXmlData`, in the store
 * below "/fwupgradeinfo/newfw", and in `fileUrl` and `notesUrl`, buffers of 128 bytes or null.
 * Otherwise the buffers get empty texts. Sets `XmlErrMsg_LostKey` to null. */
KIOAPP_API int do_FwXml_Parser(char *document, char *fileUrl, char *notesUrl);

/* Looks for the list of a kind (KIOAPP_FW_LIST_FIRMWARE to KIOAPP_FW_LIST_FILE_NAME) in `len`
 * characters of `text` (0 or less: to its end) and through its first 100 items for one that fits
 * `fwXmlData`. Returns a KIOAPP_FW_LIST_ result; another kind or a null text gives
 * KIOAPP_FW_LIST_ERROR. */
KIOAPP_API int do_FwEntryList_Parser(char *text, int len, int kind);

/* Looks whether one entry, the content of a "Firmware" element, fits `fwXmlData`; when it does, its
 * addresses are put there. Arguments and result as above. */
KIOAPP_API int do_FwFirmware_Parser(char *text, int len);

/* Takes one step (a KIOAPP_FW_ action) and rewrites the status document. While an image is being
 * fetched, every action but KIOAPP_FW_INIT looks whether it is still being fetched. What does not
 * go with the status changes nothing.
 *
 * Files are fetched with the command in the store node "/fwupgradeinfo/urlgetcmd", in which
 * "$savefn" stands for the file and "$url" for the address:
 *
 *     wget -O "$savefn" "$url"
 *
 * Both are put in so that the shell takes them as they are, inside quotes of either kind and
 * without quotes. They must not be placed where a shell reads them twice: inside backquotes or
 * "$(...)", after "eval", or in the text of another "sh -c". A command without "$savefn" is run as
 * it stands, and one of more than 4094 characters is not run. */
KIOAPP_API void do_FwUpgradeAction(int action);

/* Size in bytes of the flash partition `name`, its double quotes included ("\"Kernel\""); 0 when
 * there is none, or no list of partitions. */
KIOAPP_API int getMTDPartSize(const char *name);

/* Writes `length` bytes at `offset` of a file to the bootloader's partition. Returns the status of
 * the shell command. The file's name is placed in it as it is. */
KIOAPP_API int mtd_write_bootloader(const char *file, int offset, int length);

/* Does nothing and returns 0. */
KIOAPP_API int mtd_write_firmware(void);

/* Remembers the version of the running kernel in the non-volatile settings. Returns the status of
 * the shell command, -1 when the version cannot be read. */
KIOAPP_API int write_flash_kernel_version(void);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_FIRMWARE
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_FIRMWARE
#endif

#endif
