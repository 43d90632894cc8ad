/* Compares size, member offsets and member types of the public structures with a second definition,
 * and with the numbers that they have on x86-64 and on 32-bit machines. */
#include <kioapp/kioapp.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "interface_types.h"

struct Row {
  const char *name;
  size_t actual;
  size_t expected;
  size_t x86_64;
  size_t length;    /* of the member; 0 in the row of a structure's size */
  size_t alignment; /* of the member or the structure */
  int same_type;
};

#define SIZE(type, x86_64) \
  { #type, sizeof(type), sizeof(Abi##type), x86_64, 0, __alignof__(type), 1 }
#define ROW(type, member, x86_64, same_type)                                        \
  {                                                                                 \
#type "." #member, offsetof(type, member), offsetof(Abi##type, member), x86_64, \
        sizeof(((type *)0)->member), __alignof__(((type *)0)->member), same_type    \
  }
#define MEMBER(type, member, x86_64)                                \
  ROW(type, member, x86_64,                                         \
      __builtin_types_compatible_p(__typeof__(((type *)0)->member), \
                                   __typeof__(((Abi##type *)0)->member)))
/* A member of a structure type, which has another name in the second definition. */
#define SECTION(type, member, x86_64) \
  ROW(type, member, x86_64, sizeof(((type *)0)->member) == sizeof(((Abi##type *)0)->member))

static const struct Row kRows[] = {
    SIZE(RssAcRule, 152),
    MEMBER(RssAcRule, active, 0),
    MEMBER(RssAcRule, mac, 4),
    MEMBER(RssAcRule, path, 22),

    SIZE(RssIsp, 524),
    MEMBER(RssIsp, countryName, 0),
    MEMBER(RssIsp, ispName, 128),
    MEMBER(RssIsp, vpi, 256),
    MEMBER(RssIsp, vci, 260),
    MEMBER(RssIsp, encapsulationMode, 264),
    MEMBER(RssIsp, path, 392),
    MEMBER(RssIsp, encapModeCode, 520),

    SIZE(RssExtenderSite, 444),
    MEMBER(RssExtenderSite, survey, 0),
    MEMBER(RssExtenderSite, connRefSiteBssid, 4),
    MEMBER(RssExtenderSite, wirelessType, 22),
    MEMBER(RssExtenderSite, wirelessName, 54),
    MEMBER(RssExtenderSite, encryptionKey, 182),
    MEMBER(RssExtenderSite, path, 310),
    MEMBER(RssExtenderSite, wirelessTypeCode, 440),

    SIZE(RssUpLink, 2248),
    MEMBER(RssUpLink, configurable, 0),
    MEMBER(RssUpLink, hardwareSupport, 4),
    MEMBER(RssUpLink, hardwareType, 132),
    MEMBER(RssUpLink, connType, 164),
    MEMBER(RssUpLink, mtu, 292),
    MEMBER(RssUpLink, loginUserName, 296),
    MEMBER(RssUpLink, loginPassword, 424),
    MEMBER(RssUpLink, ip, 552),
    MEMBER(RssUpLink, netMask, 568),
    MEMBER(RssUpLink, gateway, 584),
    MEMBER(RssUpLink, dns, 600),
    SECTION(RssUpLink, dsl, 616),
    SECTION(RssUpLink, apn, 1140),
    SECTION(RssUpLink, extenderSite, 1664),
    MEMBER(RssUpLink, path, 2108),
    MEMBER(RssUpLink, restart, 2236),
    MEMBER(RssUpLink, connTypeCode, 2240),
    MEMBER(RssUpLink, hardwareTypeCode, 2244),

    SIZE(RssWlan, 7160),
    MEMBER(RssWlan, configurable, 0),
    MEMBER(RssWlan, wlEnbl, 4),
    MEMBER(RssWlan, wlSchedule, 8),
    MEMBER(RssWlan, wirelessBssid, 12),
    MEMBER(RssWlan, wirelessName, 30),
    MEMBER(RssWlan, encryptionMode, 158),
    MEMBER(RssWlan, encryptionType, 190),
    MEMBER(RssWlan, encryptionKey, 222),
    MEMBER(RssWlan, country, 350),
    MEMBER(RssWlan, channelList, 382),
    MEMBER(RssWlan, channel, 510),
    MEMBER(RssWlan, wlAcEnbl, 544),
    MEMBER(RssWlan, wlAcMode, 548),
    SECTION(RssWlan, acRule, 552),
    MEMBER(RssWlan, accessControlPath, 6632),
    MEMBER(RssWlan, wlAcRuleNo, 6760),
    MEMBER(RssWlan, path, 6764),
    MEMBER(RssWlan, restart, 6892),
    MEMBER(RssWlan, encryptionModeCode, 6896),
    MEMBER(RssWlan, encryptionTypeCode, 6900),
    MEMBER(RssWlan, wirelessNameValidate, 6904),
    MEMBER(RssWlan, encryptionKeyValidate, 7032),

    SIZE(RssSafetyVyr, 148),
    MEMBER(RssSafetyVyr, safetyVyrEnbl, 0),
    MEMBER(RssSafetyVyr, urlDetectEnbl, 4),
    MEMBER(RssSafetyVyr, safetyNotifyEnbl, 8),
    MEMBER(RssSafetyVyr, toolRecommendEnbl, 12),
    MEMBER(RssSafetyVyr, path, 16),
    MEMBER(RssSafetyVyr, restart, 144),

    SIZE(RssSpecVersion, 44),
    MEMBER(RssSpecVersion, major, 0),
    MEMBER(RssSpecVersion, minor, 4),
    MEMBER(RssSpecVersion, path, 8),
    MEMBER(RssSpecVersion, combined, 40),

    SIZE(RssXmlData, 18252),
    MEMBER(RssXmlData, specMajor, 0),
    MEMBER(RssXmlData, specMinor, 4),
    MEMBER(RssXmlData, specName, 8),
    MEMBER(RssXmlData, specVer, 40),
    MEMBER(RssXmlData, configurable, 44),
    MEMBER(RssXmlData, deviceName, 48),
    MEMBER(RssXmlData, devicePwd, 176),
    MEMBER(RssXmlData, deviceType, 304),
    MEMBER(RssXmlData, routerEnbl, 432),
    MEMBER(RssXmlData, extenderEnbl, 436),
    MEMBER(RssXmlData, easyRoaming, 440),
    SECTION(RssXmlData, upLink, 568),
    MEMBER(RssXmlData, loginUserNameValidate, 2816),
    MEMBER(RssXmlData, loginPasswordValidate, 2944),
    SECTION(RssXmlData, wlan, 3072),
    SECTION(RssXmlData, safetyVyr, 17392),
    MEMBER(RssXmlData, devicePath, 17540),
    MEMBER(RssXmlData, deviceRestart, 17572),
    MEMBER(RssXmlData, roamingRestart, 17576),
    MEMBER(RssXmlData, wlanSurveyRestart, 17580),
    MEMBER(RssXmlData, friendlyNameValidate, 17584),
    MEMBER(RssXmlData, passwordValidate, 17712),
    MEMBER(RssXmlData, saveflag, 17840),
    MEMBER(RssXmlData, exeflag, 17844),
    MEMBER(RssXmlData, pre_exeflag, 17848),
    MEMBER(RssXmlData, exeWaitSec, 17852),
    MEMBER(RssXmlData, setResult, 17856),
    MEMBER(RssXmlData, setMsg, 17860),
    MEMBER(RssXmlData, apCloningOnly, 17988),
    MEMBER(RssXmlData, apCloningFeature, 17989),
    MEMBER(RssXmlData, fwUpgradeFeature, 17990),
    MEMBER(RssXmlData, easyRoamingFeature, 17991),
    MEMBER(RssXmlData, safetyVyrFeature, 17992),
    MEMBER(RssXmlData, wlan24Feature, 17993),
    MEMBER(RssXmlData, wlan5Feature, 17994),
    MEMBER(RssXmlData, tmpPath, 17995),
    MEMBER(RssXmlData, scriptPath, 18123),

#if KIOAPP_HAS_FIRMWARE
    SIZE(FwXmlData, 448),
    SECTION(FwXmlData, specVersion, 0),
    MEMBER(FwXmlData, fileUrl, 44),
    MEMBER(FwXmlData, notesUrl, 172),
    MEMBER(FwXmlData, deviceMac, 300),
    MEMBER(FwXmlData, currFileName, 318),
#endif
#if KIOAPP_HAS_AUTH
    SIZE(ClientAuthInfo, 304),
    /* NOLINTNEXTLINE(bugprone-sizeof-expression): the pointer's size is meant */
    SECTION(ClientAuthInfo, next, 0),
    MEMBER(ClientAuthInfo, ip, 8),
    MEMBER(ClientAuthInfo, username, 136),
    MEMBER(ClientAuthInfo, password, 200),
    MEMBER(ClientAuthInfo, sessionid, 264),
    MEMBER(ClientAuthInfo, logout, 296),
#endif

    SIZE(KioTimer, 48),
    /* NOLINTNEXTLINE(bugprone-sizeof-expression): the pointer's size is meant */
    SECTION(KioTimer, next, 0),
    MEMBER(KioTimer, remaining, 8),
    MEMBER(KioTimer, interval, 12),
    MEMBER(KioTimer, user_b, 16),
    MEMBER(KioTimer, arg, 24),
    MEMBER(KioTimer, user_a, 32),
    MEMBER(KioTimer, callback, 40),
};

/* The structures that hold pointers are smaller where these have 32 bits; all others are the same.
 */
struct NarrowRow {
  const char *name;
  size_t actual;
  size_t expected;
};

#define NARROW_SIZE(type, expected) \
  { #type, sizeof(type), expected }
#define NARROW(type, member, expected) \
  { #type "." #member, offsetof(type, member), expected }

static const struct NarrowRow kNarrowRows[] = {
    NARROW_SIZE(KioTimer, 28),
    NARROW(KioTimer, remaining, 4),
    NARROW(KioTimer, interval, 8),
    NARROW(KioTimer, user_b, 12),
    NARROW(KioTimer, arg, 16),
    NARROW(KioTimer, user_a, 20),
    NARROW(KioTimer, callback, 24),

#if KIOAPP_HAS_AUTH
    NARROW_SIZE(ClientAuthInfo, 296),
    NARROW(ClientAuthInfo, ip, 4),
    NARROW(ClientAuthInfo, username, 132),
    NARROW(ClientAuthInfo, password, 196),
    NARROW(ClientAuthInfo, sessionid, 260),
    NARROW(ClientAuthInfo, logout, 292),
#endif
};

static int HoldsPointers(const char *name) {
  return strncmp(name, "KioTimer", 8) == 0 || strncmp(name, "ClientAuthInfo", 14) == 0;
}

static int g_failures = 0;

static void Expect(int holds, const char *name, const char *what, size_t actual, size_t expected) {
  if (!holds) {
    fprintf(stderr, "%s: %s is %lu, expected %lu\n", name, what, (unsigned long)actual,
            (unsigned long)expected);
    ++g_failures;
  }
}

/* The members of a structure lie side by side: none is missing from the table. */
static void CheckThatNoMemberIsMissing(const struct Row *row, const struct Row *end) {
  const struct Row *const structure = row;
  size_t next = 0;
  for (++row; row != end && row->length != 0; ++row) {
    const size_t expected = (next + row->alignment - 1) / row->alignment * row->alignment;
    Expect(row->actual == expected, row->name, "place after the member before", row->actual,
           expected);
    next = row->actual + row->length;
  }
  const size_t size =
      (next + structure->alignment - 1) / structure->alignment * structure->alignment;
  Expect(structure->actual == size, structure->name, "size after the last member",
         structure->actual, size);
}

int main(void) {
  const struct Row *const end = kRows + sizeof(kRows) / sizeof(kRows[0]);
  for (const struct Row *row = kRows; row != end; ++row) {
    const char *const what = row->length == 0 ? "size" : "offset";
    Expect(row->actual == row->expected, row->name, what, row->actual, row->expected);
    if (sizeof(void *) == 8 || !HoldsPointers(row->name)) {
      Expect(row->actual == row->x86_64, row->name, what, row->actual, row->x86_64);
    }
    Expect(row->same_type, row->name, "sameness of type", 0, 1);
    if (row->length == 0) {
      CheckThatNoMemberIsMissing(row, end);
    }
  }

  if (sizeof(void *) == 4) {
    const size_t rows = sizeof(kNarrowRows) / sizeof(kNarrowRows[0]);
    for (const struct NarrowRow *row = kNarrowRows; row != kNarrowRows + rows; ++row) {
      Expect(row->actual == row->expected, row->name, "place on 32 bits", row->actual,
             row->expected);
    }
  }

#define EXPECT_ALIKE(first, second)                                             \
  Expect(offsetof(RssXmlData, first) == offsetof(RssSpecVersion, second) &&     \
             sizeof(rssXmlData.first) == sizeof(((RssSpecVersion *)0)->second), \
         "RssXmlData." #first, "offset", offsetof(RssXmlData, first),           \
         offsetof(RssSpecVersion, second))
  EXPECT_ALIKE(specMajor, major);
  EXPECT_ALIKE(specMinor, minor);
  EXPECT_ALIKE(specName, path);
  EXPECT_ALIKE(specVer, combined);

  printf("%d rows compared, %d failures\n", (int)(end - kRows), g_failures);
  return g_failures == 0 ? 0 : 1;
}
