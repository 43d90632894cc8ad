/* A row for each exported function: null_test.c calls them with null pointers. */
#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>

#include "null_calls.h"

static void DoNothing(uintptr_t argument) { (void)argument; }

/* A row is a function of its own, so that the compiler checks the call. Statements stand where no
 * parentheses can. */
#define CALL(name, statement) \
  static void Call_##name(void) { statement; }

CALL(strstri, ReturnedText(strstri(Text(0, "a needle"), Text(1, "needle"))))
CALL(FindXmlKeyContain_,
     ReturnedText(FindXmlKeyContain_(Text(0, "<a>1</a>"), 0, Text(1, "a"), Buffer(2), 0)))
CALL(FindXmlKeyContain,
     ReturnedText(FindXmlKeyContain(Text(0, "<a>1</a>"), 0, Text(1, "a"), Buffer(2))))
CALL(SearchXmlKeyHeader, ReturnedText(SearchXmlKeyHeader(Text(0, "<a>1</a>"), 0, Text(1, "a"))))
CALL(prepareXmlBlockData, ReturnedText(prepareXmlBlockData(Text(0, "top"), Text(1, "<a>1</a>"), 0,
                                                           Text(2, "a"), Buffer(3), Buffer(4))))
CALL(GetXmlKeyStrValue_,
     ReturnedNumber(GetXmlKeyStrValue_(Text(0, "<a>1</a>"), 0, Text(1, "a"), Buffer(2), 16)))
CALL(GetXmlKeyIntValue_,
     ReturnedNumber(GetXmlKeyIntValue_(Text(0, "<a>1</a>"), 0, Text(1, "a"), Buffer(2))))
CALL(GetXmlKeyStrValue, ReturnedNumber(GetXmlKeyStrValue(Text(0, "<a>1</a>"), 0, Text(1, "top"),
                                                         Text(2, "a"), Buffer(3), 16)))
CALL(GetXmlKeyIntValue, ReturnedNumber(GetXmlKeyIntValue(Text(0, "<a>1</a>"), 0, Text(1, "top"),
                                                         Text(2, "a"), Buffer(3))))
CALL(SearchKeyArray,
     ReturnedNumber(SearchKeyArray(Text(0, "dhcp"), Other(1, (void *)ConnTypeArray))))
CALL(StrCmpWithXStr, ReturnedNumber(StrCmpWithXStr(Text(0, "Attic"), Text(1, "/sys/text"), 0)))
CALL(IntCmpWithXStr, ReturnedNumber(IntCmpWithXStr(3, Text(0, "/sys/number"), 0)))
CALL(IntMaxCmpWithXStr,
     ReturnedNumber(IntMaxCmpWithXStr(3, Text(0, "/sys/number"), 0, 2, Buffer(1))))
CALL(getXNode_, ReturnedText(getXNode_(Buffer(0), Text(1, "/sys/none"), Text(2, "<none>"), 1)))
CALL(getXNode, ReturnedText(getXNode(Buffer(0), Text(1, "/sys/none"), Text(2, "none"))))

CALL(do_RssXml_Parser, ReturnedNumber(do_RssXml_Parser(Text(0, "<root></root>"))))
CALL(do_RssXml_Parser_for_ApCloning,
     ReturnedNumber(do_RssXml_Parser_for_ApCloning(Text(0, "<root></root>"))))
CALL(do_RssXml_Parser_, ReturnedNumber(do_RssXml_Parser_(Text(0, "<root></root>"))))
#define VERSION "<v><major>1</major><minor>1</minor></v>"
CALL(do_XmlSpecVersion_Parser,
     ReturnedNumber(do_XmlSpecVersion_Parser(Text(0, "top"), Text(1, VERSION), 0, Buffer(2),
                                             Text(3, "v"))))
#define PROVIDER "<DSL><CountryName>c</CountryName><IspName>i</IspName></DSL>"
CALL(do_RssISP_Parser, ReturnedNumber(do_RssISP_Parser(Text(0, "top"), Text(1, PROVIDER), 0,
                                                       Buffer(2), Text(3, "DSL"))))
#define SITE "<ExtenderSite><Survey>1</Survey></ExtenderSite>"
CALL(do_RssExtender_Parser,
     ReturnedNumber(do_RssExtender_Parser(Text(0, "top"), Text(1, SITE), 0, Buffer(2))))
CALL(write_RssXml_ResultXml, ReturnedNumber(write_RssXml_ResultXml(3, Text(0, "message"), 0)))
CALL(write_RssXml_KeyResult, write_RssXml_KeyResult(Text(0, "top"), Text(1, "key"), 3);
     ReturnedNothing())
CALL(write_RssXml_VerifyError, write_RssXml_VerifyError(Text(0, "top"), Text(1, "key"));
     ReturnedNothing())
CALL(write_RssXml_LostKeyError, write_RssXml_LostKeyError(Text(0, "top"), Text(1, "key"));
     ReturnedNothing())
CALL(write_TmpXmlFile,
     ReturnedNumber(write_TmpXmlFile(Text(0, "small.xml"), Text(1, "tag"), Text(2, "value"), 1)))
CALL(write_ResultXmlFile,
     ReturnedNumber(write_ResultXmlFile(Text(0, "small.xml"), Text(1, "tag"), Text(2, "value"))))

#if KIOAPP_HAS_VARIABLES
CALL(cvtRss_XmlPathVsVarName, ReturnedText(cvtRss_XmlPathVsVarName(Text(0, "rss_DeviceName"), 1)))
CALL(setget_RssVar, ReturnedNumber((long)setget_RssVar(Text(0, "rss_DeviceName"), Text(1, "Attic"),
                                                       KIOAPP_VAR_WRITE)))
CALL(get_RssVar, ReturnedNumber(get_RssVar(Text(0, "rss_DeviceName"), Buffer(1), 0)))
CALL(getRssVar, ReturnedText(getRssVar(Text(0, "rss_DeviceName"))))
CALL(set_RssVar, ReturnedNumber((long)set_RssVar(Text(0, "rss_DeviceName"), Text(1, "Attic"))))
CALL(validate_RssVar, ReturnedNumber(validate_RssVar(Text(0, "rss_DeviceName"), Text(1, "Attic"))))
CALL(validate_RssVar2, ReturnedNumber(validate_RssVar2(Text(0, "rss_DeviceName=Attic"))))
CALL(do_RssVar_Parser,
     ReturnedNumber(do_RssVar_Parser(Text(0, "rss_DeviceName=Attic"), '&', Buffer(1), 1)))
#endif

#if KIOAPP_HAS_AUTH
static void *Head(int index) {
  static ClientAuthInfo *head = NULL;
  return Other(index, &head);
}
CALL(clientAuthListAdd,
     ReturnedNumber(clientAuthListAdd(Head(0), Text(1, "10.1.1.2"), Text(2, "admin"),
                                      Text(3, "password"), Text(4, "session"), 2)))
CALL(clientAuthListDel,
     ReturnedNumber(clientAuthListDel(Head(0), Text(1, "10.1.1.2"), Text(2, "session"), 2)))
static ClientAuthInfo g_client;
CALL(checkClientAuthIp, strcpy(g_client.ip, "10.1.1.2"); strcpy(g_client.sessionid, "1");
     ReturnedNumber(checkClientAuthIp(Other(0, &g_client), Text(1, "10.1.1.2"), Text(2, "1"), 2) !=
                    NULL))
CALL(check_StarterAuthIP,
     ReturnedNumber(check_StarterAuthIP(Text(0, "10.1.1.2"), Text(1, "session"))))
CALL(printList, printList(Other(0, &g_client)); ReturnedNothing())
CALL(MD5Digest, MD5Digest(Text(0, "abc"), 3, Buffer(1)); ReturnedNothing())
CALL(Hex2String, Hex2String((unsigned char *)Text(0, "abc"), Buffer(1), 1); ReturnedNothing())
CALL(MD5Encryption, ReturnedText(MD5Encryption(Text(0, "abc"))))
/* The keys change with the time: their lengths do not. */
CALL(generate_StarterKey, ReturnedNumber((long)strlen(generate_StarterKey(Text(0, "10.1.1.2")))))
CALL(generate_BKey, ReturnedNumber((long)strlen(generate_BKey(Text(0, "10.1.1.2")))))
static char g_request[64];
CALL(starter_auth_check,
     snprintf(g_request, sizeof(g_request), "kioAppKey= %s", generate_StarterKey("10.1.1.2"));
     ReturnedNumber(starter_auth_check(Text(0, g_request), Text(1, "10.1.1.2"), Text(2, "s"))))
#endif

/* NOLINTBEGIN(clang-diagnostic-format-security) */
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
CALL(logPrintf, ReturnedNumber(logPrintf(5, Text(0, "text\n"))))
CALL(msgPrintf, ReturnedNumber(msgPrintf(Text(0, "text\n"))))
CALL(dbgPrintf, ReturnedNumber(dbgPrintf(Text(0, "text\n"))))
/* NOLINTEND(clang-diagnostic-format-security) */
CALL(create_timer, static int any;
     void (*const callback)(uintptr_t) = Other(0, &any) != NULL ? DoNothing : NULL;
     KioTimer *const timer = create_timer(0, callback, 0, 0, 0); add_timer(timer);
     ReturnedNumber(timer != NULL))
CALL(add_timer, static KioTimer timer; add_timer(Other(0, &timer)); ReturnedNothing())
CALL(getFileSize, ReturnedNumber((long)getFileSize(Text(0, "/"))))

CALL(strChgKeyword,
     ReturnedText(strChgKeyword(Buffer(0), Text(1, "a$k"), Text(2, "$k"), Text(3, "12"))))
CALL(strChgRssKeywords, ReturnedText(strChgRssKeywords(Text(0, "$lanip"))))
CALL(strnWildcardCmp, ReturnedNumber(strnWildcardCmp(Text(0, "abc"), Text(1, "a*"), 9)))
CALL(strWildcardCmp, ReturnedNumber(strWildcardCmp(Text(0, "abc"), Text(1, "a*"))))
CALL(strncpy_HtmlDecode, ReturnedText(strncpy_HtmlDecode(Buffer(0), Text(1, "a+b"), 9)))
CALL(strncpy_HtmlEncode, ReturnedText(strncpy_HtmlEncode(Buffer(0), Text(1, "a b"), 9)))
CALL(strncpy_XmlDecode, ReturnedText(strncpy_XmlDecode(Buffer(0), Text(1, "&lt;"), 9)))
CALL(strncpy_XmlEncode, ReturnedText(strncpy_XmlEncode(Buffer(0), Text(1, "<"), 9)))
CALL(strip_chars, ReturnedText(strip_chars(Text(0, "--a--"), Text(1, "-"))))
CALL(trim, ReturnedText(trim(Text(0, " a "))))
CALL(trimTo, ReturnedText(trimTo(Buffer(0), Text(1, " a "))))

CALL(is_Valid_IP, ReturnedNumber(is_Valid_IP(Text(0, "10.0.0.1"))))
CALL(is_Valid_Netmask, ReturnedNumber(is_Valid_Netmask(Text(0, "255.0.0.0"))))
CALL(is_Valid_IP_CheckMask,
     ReturnedNumber(is_Valid_IP_CheckMask(Text(0, "255.0.0.0"), Text(1, "10.0.0.1"),
                                          Text(2, "10.0.0.2"))))
CALL(is_Valid_WpaPskKey, ReturnedNumber(is_Valid_WpaPskKey(Text(0, "12345678"))))
CALL(is_Valid_WepKey, ReturnedNumber(is_Valid_WepKey(Text(0, "12345"), 5)))
CALL(validate_RssData, ReturnedNumber(validate_RssData(Text(0, "ab"), Text(1, "0,9,1"))))

#if KIOAPP_HAS_FIRMWARE
#define LIST                                                                                   \
  "<root><specVersion><major>1</major><minor>0</minor></specVersion><FirmwareList><Firmware>"  \
  "<MacList><MAC>*</MAC></MacList><FwURL>/b.bin</FwURL><NotesURL>/b.txt</NotesURL></Firmware>" \
  "</FirmwareList></root>"
CALL(do_FwXml_Parser, ReturnedNumber(do_FwXml_Parser(Text(0, LIST), Buffer(1), Buffer(2))))
CALL(do_FwEntryList_Parser, ReturnedNumber(do_FwEntryList_Parser(Text(0, LIST), 0, 0)))
CALL(do_FwFirmware_Parser, ReturnedNumber(do_FwFirmware_Parser(Text(0, LIST), 0)))
CALL(check, ReturnedNumber(check(Text(0, "/absent"), 0, 64, Buffer(1))))
CALL(crc32, ReturnedNumber((long)crc32(7, (const unsigned char *)Text(0, "abc"), 1)))
CALL(getMTDPartSize, ReturnedNumber(getMTDPartSize(Text(0, "\"Kernel\""))))
CALL(mtd_write_bootloader, ReturnedNumber(mtd_write_bootloader(Text(0, "/absent"), 0, 0) != 0))
#endif

#define ROW(name, pointers) \
  { #name, pointers, Call_##name }
#define NO_POINTER(name) \
  { #name, "", NULL }

const struct NullRow kNullRows[] = {
    ROW(strstri, "tt"),
    ROW(FindXmlKeyContain_, "ttw"),
    ROW(FindXmlKeyContain, "ttw"),
    ROW(SearchXmlKeyHeader, "tt"),
    ROW(prepareXmlBlockData, "tttww"),
    ROW(GetXmlKeyStrValue_, "ttw"),
    ROW(GetXmlKeyIntValue_, "ttw"),
    ROW(GetXmlKeyStrValue, "tttw"),
    ROW(GetXmlKeyIntValue, "tttw"),
    ROW(SearchKeyArray, "to"),
    ROW(StrCmpWithXStr, "tt"),
    ROW(IntCmpWithXStr, "t"),
    ROW(IntMaxCmpWithXStr, "tw"),
    ROW(getXNode_, "wtt"),
    ROW(getXNode, "wtt"),
    ROW(do_RssXml_Parser, "t"),
    ROW(do_RssXml_Parser_for_ApCloning, "t"),
    ROW(do_RssXml_Parser_, "t"),
    ROW(do_XmlSpecVersion_Parser, "ttwt"),
    ROW(do_RssISP_Parser, "ttwt"),
    ROW(do_RssExtender_Parser, "ttw"),
    ROW(write_RssXml_ResultXml, "t"),
    ROW(write_RssXml_KeyResult, "tt"),
    ROW(write_RssXml_VerifyError, "tt"),
    ROW(write_RssXml_LostKeyError, "tt"),
    ROW(write_TmpXmlFile, "ttt"),
    ROW(write_ResultXmlFile, "ttt"),
#if KIOAPP_HAS_VARIABLES
    ROW(cvtRss_XmlPathVsVarName, "t"),
    ROW(setget_RssVar, "tt"),
    ROW(get_RssVar, "tw"),
    ROW(getRssVar, "t"),
    ROW(set_RssVar, "tt"),
    ROW(validate_RssVar, "tt"),
    ROW(validate_RssVar2, "t"),
    ROW(do_RssVar_Parser, "tw"),
    NO_POINTER(init_RssVar),
    NO_POINTER(do_RssVar_Commit),
#endif
#if KIOAPP_HAS_AUTH
    ROW(clientAuthListAdd, "otttt"),
    ROW(clientAuthListDel, "ott"),
    ROW(checkClientAuthIp, "ott"),
    ROW(check_StarterAuthIP, "tt"),
    ROW(printList, "o"),
    ROW(MD5Digest, "tw"),
    ROW(Hex2String, "ow"),
    ROW(MD5Encryption, "t"),
    ROW(generate_StarterKey, "t"),
    ROW(generate_BKey, "t"),
    ROW(starter_auth_check, "ttt"),
#endif
    ROW(logPrintf, "t"),
    ROW(msgPrintf, "t"),
    ROW(dbgPrintf, "t"),
    ROW(create_timer, "o"),
    ROW(add_timer, "o"),
    ROW(getFileSize, "t"),
    ROW(strChgKeyword, "wttt"),
    ROW(strChgRssKeywords, "i"),
    ROW(strnWildcardCmp, "tt"),
    ROW(strWildcardCmp, "tt"),
    ROW(strncpy_HtmlDecode, "wt"),
    ROW(strncpy_HtmlEncode, "wt"),
    ROW(strncpy_XmlDecode, "wt"),
    ROW(strncpy_XmlEncode, "wt"),
    ROW(strip_chars, "it"),
    ROW(trim, "i"),
    ROW(trimTo, "wt"),
    ROW(is_Valid_IP, "t"),
    ROW(is_Valid_Netmask, "t"),
    ROW(is_Valid_IP_CheckMask, "ttt"),
    ROW(is_Valid_WpaPskKey, "t"),
    ROW(is_Valid_WepKey, "t"),
    ROW(validate_RssData, "tt"),
#if KIOAPP_HAS_FIRMWARE
    ROW(do_FwXml_Parser, "tww"),
    ROW(do_FwEntryList_Parser, "t"),
    ROW(do_FwFirmware_Parser, "t"),
    ROW(check, "tw"),
    ROW(crc32, "o"),
    ROW(getMTDPartSize, "t"),
    ROW(mtd_write_bootloader, "t"),
    NO_POINTER(get_FwServerWebSite),
    NO_POINTER(do_FwUpgradeAction),
    NO_POINTER(mtd_write_firmware),
    NO_POINTER(write_flash_kernel_version),
#endif
    NO_POINTER(is_in_range),
#if KIOAPP_HAS_DUMP
    NO_POINTER(dump_RssXmlData),
#endif
    NO_POINTER(restore_XmlRssStatus),
    NO_POINTER(Verify_RssXml),
    NO_POINTER(Apply_RssXmlToDevice),
    NO_POINTER(calc_RssExeFlag),
    NO_POINTER(do_RssXml_Commit),
    NO_POINTER(do_RssXml_Commit_for_ApCloning),
    NO_POINTER(checkWlanChannelUsing),
    NO_POINTER(get_ExternalCall_UseSec),
    NO_POINTER(exe_ExternalCall),
    NO_POINTER(sys_uptime_seconds),
    NO_POINTER(sys_uptime_sec_str),
    NO_POINTER(starterLibVersion),
    NO_POINTER(rssSpecVersion),
    {NULL, NULL, NULL},
};
