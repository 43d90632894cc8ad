/* Platform services: resync actions, the uptime clock, timers; with version.h, versions. */
#ifndef KIOAPP_PLATFORM_H
#define KIOAPP_PLATFORM_H

#include <stdint.h>

#include "kioapp/attributes.h"
#include "kioapp/version.h"

KIOAPP_BEGIN_DECLS

/* Actions, as bits of a mask. Some are scripts and calls that the library runs; the others are left
 * to the host, which does them when the call of the library has returned, or nobody does.
 * docs/actions.md says what each of them is to bring about. */
enum {
  KIOAPP_SYNC_WAN = 1,               /* runs the script "uplink.sh" */
  KIOAPP_SYNC_WLAN = 4,              /* 2.4 GHz; left to the host */
  KIOAPP_SYNC_WLAN_5G = 8,           /* 5 GHz; left to the host */
  KIOAPP_SYNC_DEVICE = 16,           /* runs the script "device_resync.sh" */
  KIOAPP_SYNC_SAVE_TO_FLASH = 32,    /* left to the host */
  KIOAPP_SYNC_SITE_SURVEY = 64,      /* left to the host */
  KIOAPP_SYNC_FW_UPGRADE = 128,      /* left to the host */
  KIOAPP_SYNC_UPDATE_STA_RSSI = 256, /* rebuilds the list of associated stations in the store */
  KIOAPP_SYNC_DEAUTH_STA = 512,      /* disconnects the station that the store names */

  /* Those of which the library does no more than to log their names. */
  KIOAPP_SYNC_LEFT_TO_HOST = KIOAPP_SYNC_WLAN | KIOAPP_SYNC_WLAN_5G | KIOAPP_SYNC_SAVE_TO_FLASH |
                             KIOAPP_SYNC_SITE_SURVEY | KIOAPP_SYNC_FW_UPGRADE
};

/* Seconds that the action of one bit needs; 0, and a line in the log, for any other value. */
KIOAPP_API int get_ExternalCall_UseSec(int syncId);

/* Runs the actions of `mask` in ascending order of their bits. The scripts are looked for in the
 * directory that the store node "/zentrolinks/scriptdirecory" holds; how they end is not looked at.
 * Returns 0, whatever ran. */
KIOAPP_API unsigned int exe_ExternalCall(unsigned int mask);

/* Seconds since boot. */
KIOAPP_API long sys_uptime_seconds(void);

/* The same in decimal, in a static buffer. */
KIOAPP_API char *sys_uptime_sec_str(void);

/* A one-shot timer. */
typedef struct KioTimer {
  struct KioTimer *next;           /* for the list of pending timers */
  unsigned int remaining;          /* ticks left */
  unsigned int interval;           /* ticks given at creation */
  unsigned int user_b;             /* the caller's */
  uintptr_t arg;                   /* given to the callback */
  unsigned int user_a;             /* the caller's */
  void (*callback)(uintptr_t arg); /* called when no ticks are left; or null */
} KioTimer;

/* Version of the settings document format that the library speaks, "1.1". */
KIOAPP_API const char *rssSpecVersion(void);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_PLATFORM
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_PLATFORM
#endif

#endif
