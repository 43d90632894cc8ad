/* Who may come in: the key handshake and the list of the clients that are logged in.
 *
 * An app proves that it knows the administrator password by a key: the MD5 digest, in hexadecimal,
 * of the time slot (uptime / 20), the app's address, "admin" and the password (the store node
 * "/sys/user:1/password", at most 63 characters), one after the other. For the slot 1234, the
 * address 10.1.1.2 and the password "pw" the digest is that of "123410.1.1.2adminpw". At most 127
 * characters count.
 *
 *     if (starter_auth_check(request_text, peer_address, request_text) == 0) { ... }  // logged in
 *     if (check_StarterAuthIP(peer_address, request_text) == 0) { ... }               // may pass
 *
 * A client stays logged in for 300 seconds after its last request that passed. Addresses are
 * compared as texts: give the peer's address in one form always, and never one that a client wrote.
 * The list lies in memory alone. Nothing removes the clients that never come back, so a host does
 * from time to time.
 */
#ifndef KIOAPP_AUTH_H
#define KIOAPP_AUTH_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* A client. The list owns it; texts that are longer than a member are cut. */
typedef struct ClientAuthInfo {
  struct ClientAuthInfo *next; /* null behind the last */
  char ip[128];                /* address */
  char username[64];           /* user name that was given */
  char password[64];           /* the administrator password when the client logged in */
  char sessionid[32];          /* eight lower-case hexadecimal digits; guessable, so no secret */
  unsigned int logout; /* second of the uptime at which the login lapses; 0: it has lapsed */
} ClientAuthInfo;

/* The clients, in the order of their logins; null when there is none. */
extern KIOAPP_API ClientAuthInfo *clientauthinfo;

/* The client that was found or added last; null after a look-up that found none, and when the
 * client is removed. */
extern KIOAPP_API ClientAuthInfo *cur_authinfo;

/* How clients are told apart: with the mode KIOAPP_MATCH_ADDRESS by their address alone, with any
 * other by address and session: the request text must then hold the client's session id. */
enum {
  KIOAPP_MATCH_LAPSED = 0,  /* by address and session; adds a client whose login has lapsed */
  KIOAPP_MATCH_ADDRESS = 1, /* by address alone */
  KIOAPP_MATCH_SESSION = 2  /* by address and session */
};

/* Adds a client at the end of the list `*head`, logged in for 300 seconds (lapsed with
 * KIOAPP_MATCH_LAPSED). A client that is there already is kept, by KIOAPP_MATCH_ADDRESS with its
 * login made to last 300 seconds from now. `request` may be null. Returns 0 when the client was
 * there, else 1, even when memory was short and none was added.
 *
 * The session id comes from `rand`, which is seeded with the time of day. */
KIOAPP_API int clientAuthListAdd(ClientAuthInfo **head, const char *ip, const char *username,
                                 const char *password, const char *request, int mode);

/* Removes a client from the list `*head` and frees it; with a null `ip` all of them. Returns 1 when
 * one was removed, 0 otherwise, and 0 after the removal of all.
 *
 * In other modes than KIOAPP_MATCH_ADDRESS only the first client of the list must match by address
 * and session. Behind it, the first client goes that has the address, or whose session id the
 * request does not hold, or any when `request` is null. */
KIOAPP_API int clientAuthListDel(ClientAuthInfo **head, const char *ip, const char *request,
                                 int mode);

/* The first client of the list that matches, lapsed or not; null when there is none. `request` may
 * be null. */
KIOAPP_API ClientAuthInfo *checkClientAuthIp(ClientAuthInfo *head, const char *ip,
                                             const char *request, int mode);

/* Whether a request from the address `ip` may pass: 0 when a client of this address is logged in,
 * whose login then lasts 300 seconds from now; -1 otherwise. A client that has lapsed is removed.
 * `request` may be null. */
KIOAPP_API int check_StarterAuthIP(const char *ip, const char *request);

/* The MD5 digest of a text as 32 lower-case hexadecimal digits. Returns `string`. */
KIOAPP_API char *MD5Encryption(const char *text);

/* The key that a client at the address `ip` has to show now: 32 digits. Returns `string`. */
KIOAPP_API char *generate_StarterKey(const char *ip);

/* The first 8 digits of it. Returns `string`. */
KIOAPP_API char *generate_BKey(const char *ip);

/* Looks for a key in a request from the address `ip`, and logs the client in when it is good.
 *
 * The key is the 32 digits behind "kioAppKey=" and one more character that is skipped, whatever it
 * is; in a request without that marker, the 8 digits behind "BKey=". It is good when it is that of
 * the slot before the present one, of the present one, or of the three after it. `session` is the
 * text given to `clientAuthListAdd`. Returns 0 when the key is good, -1 otherwise.
 *
 * At log level 7 the request from the key on is written to the log. */
KIOAPP_API int starter_auth_check(const char *request, const char *ip, const char *session);

KIOAPP_END_DECLS

#ifndef KIOAPP_NO_SHORT_NAMES
#define KIOAPP_SHORT_NAMES_OF_AUTH
#include "kioapp/short_names.h"
#undef KIOAPP_SHORT_NAMES_OF_AUTH
#endif

#endif
