/* Each exported name once more with its type. A name that the headers do not declare, or declare
 * with another type, is an error of the compiler; one that the library lacks is one of the linker.
 *
 * exports_test.sh reads the names below: a FUNCTION is exported as code, the others as data. */
#include <kioapp/kioapp.h>

typedef void (*LostKeyHandler)(const char *path, const char *key);

/* Types and names stand where no parentheses can. NOLINTBEGIN(bugprone-macro-parentheses) */
#define FUNCTION(result, name, parameters) result(*const g_function_##name) parameters = name
#define OBJECT(type, name) type *const g_object_##name = &name
#define TEXT(name, size) char(*const g_object_##name)[size] = &name
#define TABLE(name) const char *const(*const g_object_##name)[] = &name
/* NOLINTEND(bugprone-macro-parentheses) */

OBJECT(RssXmlData, rssXmlData);
TABLE(DeviceTypeArray);
TABLE(WlanEncrypTypeArray);
TABLE(WlanEncrypModeArray);
TABLE(HardwareTypeArray);
TABLE(WirelessTypeArray);
TABLE(ConnTypeArray);
TABLE(ADslEncapModeArray);
OBJECT(LostKeyHandler, XmlErrMsg_LostKey);
TEXT(daemon_log_path, 64);
TEXT(daemon_log_header, 32);
OBJECT(int, daemon_log_level);
OBJECT(int, daemon_log_file_size_k);

FUNCTION(void, restore_XmlRssStatus, (int full));
FUNCTION(int, do_RssXml_Parser, (char *text));
FUNCTION(int, do_RssXml_Parser_for_ApCloning, (char *text));
FUNCTION(int, do_RssXml_Parser_, (char *text));
FUNCTION(int, do_XmlSpecVersion_Parser,
         (const char *parentPath, char *block, int len, RssSpecVersion *out, const char *key));
FUNCTION(int, do_RssISP_Parser,
         (const char *parentPath, char *block, int len, RssIsp *isp, const char *key));
FUNCTION(int, do_RssExtender_Parser,
         (const char *parentPath, char *block, int len, RssExtenderSite *site));
FUNCTION(int, Verify_RssXml, (void));
FUNCTION(int, Apply_RssXmlToDevice, (void));
FUNCTION(int, write_RssXml_ResultXml, (int code, const char *message, int waitSec));
FUNCTION(void, write_RssXml_KeyResult, (const char *path, const char *key, int code));
FUNCTION(void, write_RssXml_VerifyError, (const char *path, const char *key));
FUNCTION(void, write_RssXml_LostKeyError, (const char *path, const char *key));
FUNCTION(void, calc_RssExeFlag, (void));
FUNCTION(unsigned int, do_RssXml_Commit, (void));
FUNCTION(unsigned int, do_RssXml_Commit_for_ApCloning, (int full));
FUNCTION(int, write_TmpXmlFile,
         (const char *fileName, const char *tag, const char *value, int closing));
FUNCTION(int, write_ResultXmlFile, (const char *fileName, const char *tag, const char *value));
FUNCTION(int, checkWlanChannelUsing, (void));
FUNCTION(char *, strstri, (const char *haystack, const char *needle));
FUNCTION(char *, FindXmlKeyContain_,
         (char *text, int len, const char *key, int *outLen, int headerOnly));
FUNCTION(char *, FindXmlKeyContain, (char *text, int len, const char *key, int *outLen));
FUNCTION(char *, SearchXmlKeyHeader, (char *text, int len, const char *key));
FUNCTION(char *, prepareXmlBlockData,
         (const char *parentPath, char *text, int len, const char *key, char *outPath,
          int *outLen));
FUNCTION(int, GetXmlKeyStrValue_, (char *block, int len, const char *key, char *dst, int cap));
FUNCTION(int, GetXmlKeyIntValue_, (char *block, int len, const char *key, int *out));
FUNCTION(int, GetXmlKeyStrValue,
         (char *block, int len, const char *parentPath, const char *key, char *dst, int cap));
FUNCTION(int, GetXmlKeyIntValue,
         (char *block, int len, const char *parentPath, const char *key, int *out));
FUNCTION(int, SearchKeyArray, (char *word, const char *const table[]));
FUNCTION(int, StrCmpWithXStr, (const char *value, const char *path, int compareOnly));
FUNCTION(int, IntCmpWithXStr, (int value, const char *path, int compareOnly));
FUNCTION(int, IntMaxCmpWithXStr,
         (int value, const char *path, int compareOnly, int max, int *outTooLarge));
FUNCTION(char *, getXNode_, (char *dst, const char *path, const char *defaultText, int xmlEncode));
FUNCTION(char *, getXNode, (char *dst, const char *path, const char *defaultText));

#if KIOAPP_HAS_DUMP
FUNCTION(void, dump_RssXmlData, (void));
#endif

#if KIOAPP_HAS_VARIABLES
FUNCTION(char *, cvtRss_XmlPathVsVarName, (const char *text, int toPath));
FUNCTION(unsigned int, setget_RssVar, (const char *name, char *value, int mode));
FUNCTION(int, get_RssVar, (const char *name, char *value, int wantPath));
FUNCTION(char *, getRssVar, (const char *name));
FUNCTION(unsigned int, set_RssVar, (const char *name, char *value));
FUNCTION(int, validate_RssVar, (const char *name, char *value));
FUNCTION(int, validate_RssVar2, (char *text));
FUNCTION(void, init_RssVar, (void));
FUNCTION(int, do_RssVar_Parser, (char *text, char separator, char *nameOut, int apply));
FUNCTION(unsigned int, do_RssVar_Commit, (void));
#endif

#if KIOAPP_HAS_AUTH
OBJECT(ClientAuthInfo *, clientauthinfo);
OBJECT(ClientAuthInfo *, cur_authinfo);
TEXT(string, 80);
FUNCTION(int, clientAuthListAdd,
         (ClientAuthInfo * *head, const char *ip, const char *username, const char *password,
          const char *request, int mode));
FUNCTION(int, clientAuthListDel,
         (ClientAuthInfo * *head, const char *ip, const char *request, int mode));
FUNCTION(ClientAuthInfo *, checkClientAuthIp,
         (ClientAuthInfo * head, const char *ip, const char *request, int mode));
FUNCTION(int, check_StarterAuthIP, (const char *ip, const char *request));
FUNCTION(void, printList, (ClientAuthInfo * head));
FUNCTION(void, MD5Digest, (const char *text, unsigned int length, unsigned char *digest));
FUNCTION(void, Hex2String, (const unsigned char *bytes, char *output, int count));
FUNCTION(char *, MD5Encryption, (const char *text));
FUNCTION(char *, generate_StarterKey, (const char *ip));
FUNCTION(char *, generate_BKey, (const char *ip));
FUNCTION(int, starter_auth_check, (const char *request, const char *ip, const char *session));
#endif

FUNCTION(int, logPrintf, (int level, const char *format, ...));
FUNCTION(int, msgPrintf, (const char *format, ...));
FUNCTION(int, dbgPrintf, (const char *format, ...));
FUNCTION(int, get_ExternalCall_UseSec, (int syncId));
FUNCTION(unsigned int, exe_ExternalCall, (unsigned int mask));
FUNCTION(long, sys_uptime_seconds, (void));
FUNCTION(char *, sys_uptime_sec_str, (void));
FUNCTION(KioTimer *, create_timer,
         (unsigned int interval, void (*callback)(uintptr_t), uintptr_t arg, unsigned int user_a,
          unsigned int user_b));
FUNCTION(void, add_timer, (KioTimer * timer));
FUNCTION(const char *, starterLibVersion, (void));
FUNCTION(const char *, rssSpecVersion, (void));
FUNCTION(unsigned int, getFileSize, (const char *path));
FUNCTION(char *, strChgKeyword,
         (char *dst, const char *src, const char *key, const char *replacement));
FUNCTION(char *, strChgRssKeywords, (char *text));
FUNCTION(int, strnWildcardCmp, (const char *subject, const char *pattern, int n));
FUNCTION(int, strWildcardCmp, (const char *subject, const char *pattern));
FUNCTION(char *, strncpy_HtmlDecode, (char *dst, const char *src, int n));
FUNCTION(char *, strncpy_HtmlEncode, (char *dst, const char *src, int n));
FUNCTION(char *, strncpy_XmlDecode, (char *dst, const char *src, int n));
FUNCTION(char *, strncpy_XmlEncode, (char *dst, const char *src, int n));
FUNCTION(char *, strip_chars, (char *text, const char *set));
FUNCTION(char *, trim, (char *text));
FUNCTION(char *, trimTo, (char *dst, const char *src));
FUNCTION(int, is_in_range, (int value, int min, int max));
FUNCTION(int, is_Valid_IP, (const char *text));
FUNCTION(int, is_Valid_Netmask, (const char *text));
FUNCTION(int, is_Valid_IP_CheckMask, (const char *mask, const char *a, const char *b));
FUNCTION(int, is_Valid_WpaPskKey, (const char *key));
FUNCTION(int, is_Valid_WepKey, (const char *key, int n));
FUNCTION(int, validate_RssData, (const char *value, const char *rule));

#if KIOAPP_HAS_FIRMWARE
OBJECT(FwXmlData, fwXmlData);
FUNCTION(const char *, get_FwServerWebSite, (void));
FUNCTION(int, do_FwXml_Parser, (char *document, char *fileUrl, char *notesUrl));
FUNCTION(int, do_FwEntryList_Parser, (char *text, int len, int kind));
FUNCTION(int, do_FwFirmware_Parser, (char *text, int len));
FUNCTION(void, do_FwUpgradeAction, (int action));
FUNCTION(int, check, (const char *path, unsigned int offset, unsigned int length, char *message));
FUNCTION(unsigned int, crc32, (unsigned int seed, const unsigned char *data, unsigned int length));
FUNCTION(int, getMTDPartSize, (const char *name));
FUNCTION(int, mtd_write_bootloader, (const char *file, int offset, int length));
FUNCTION(int, mtd_write_firmware, (void));
FUNCTION(int, write_flash_kernel_version, (void));
#endif
