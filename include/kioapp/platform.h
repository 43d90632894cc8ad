/* Platform services: resync actions, the uptime clock, timers, versions. */
#ifndef KIOAPP_PLATFORM_H
#define KIOAPP_PLATFORM_H

#include <stdint.h>

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* Actions, as bits of a mask. */
enum {
  KIOAPP_SYNC_WAN = 1,               /* runs the script "uplink.sh" */
  KIOAPP_SYNC_WLAN = 4,              /* 2.4 GHz; left to the host */
  KIOAPP_SYNC_WLAN_5G = 8,           /* 5 GHz; left to the host */
  KIOAPP_SYNC_DEVICE = 16,           /* runs the script "device_resync.sh" */
  KIOAPP_SYNC_SAVE_TO_FLASH = 32,    /* left to the host */
  KIOAPP_SYNC_SITE_SURVEY = 64,      /* left to the host */
  KIOAPP_SYNC_FW_UPGRADE = 128,      /* left to the host */
  KIOAPP_SYNC_UPDATE_STA_RSSI = 256, /* rebuilds the list of associated stations in the store */
  KIOAPP_SYNC_DEAUTH_STA = 512       /* disconnects the station that the store names */
};

/* Seconds that the action of one bit needs; 0, and a line in the log, for any other value. */
KIOAPP_API int get_ExternalCall_UseSec(int syncId);

/* Runs the actions of `mask` in ascending order of their bits. The scripts are looked for in the
 * directory that the store node "/zentrolinks/scriptdirecory" holds. Returns 0. */
KIOAPP_API unsigned int exe_ExternalCall(unsigned int mask);

/* Seconds since boot. */
KIOAPP_API long sys_uptime_seconds(void);

/* The same in decimal, in a static buffer. */
KIOAPP_API char *sys_uptime_sec_str(void);

/* A one-shot timer. */
typedef struct KioTimer {
  struct KioTimer *next;
  unsigned int remaining; /* ticks left */
  unsigned int interval;  /* ticks given at creation */
  unsigned int user_b;
  uintptr_t arg;
  unsigned int user_a;
  void (*callback)(uintptr_t arg);
} KioTimer;

/* Allocates a timer of `interval` ticks; the caller owns it and releases it with `free` when it is
 * not listed. `user_a` and `user_b` are kept for the caller. Returns null when memory is short. */
KIOAPP_API KioTimer *create_timer(unsigned int interval, void (*callback)(uintptr_t), uintptr_t arg,
                                  unsigned int user_a, unsigned int user_b);

/* Puts the timer at the front of the pending list; a timer with no ticks left is not listed, its
 * callback (when there is one) runs at once. A listed timer must stay alive. */
KIOAPP_API void add_timer(KioTimer *timer);

/* Version of the library, "b1.2.3a". */
KIOAPP_API const char *starterLibVersion(void);

/* Version of the settings document format that the library speaks, "1.1". */
KIOAPP_API const char *rssSpecVersion(void);

/* Size of a file in bytes; 0xFFFFFFFF when it cannot be read. */
KIOAPP_API unsigned int getFileSize(const char *path);

KIOAPP_END_DECLS

#endif
