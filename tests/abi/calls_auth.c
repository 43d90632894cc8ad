/* Calls of the key handshake and the list of clients. */
#include <kioapp/auth.h>
#include <kioapp/platform.h>
#include <stdio.h>
#include <string.h>

#include "calls.h"
#include "expect.h"
#include "testing/memory_store.h"

static void CheckDigests(void) {
  unsigned char digest[16];
  char digits[33];
  MD5Digest("abc", 3, digest);
  Hex2String(digest, digits, 16);
  EXPECT_TEXT(digits, "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_TEXT(MD5Encryption("abc"), digits);
  EXPECT_TEXT(string, digits);
}

/* The uptime may enter the next slot at any time, so a key is compared with those of two moments.
 */
static void CheckKeys(void) {
  char source[128];
  char before[33];
  const long slot = sys_uptime_seconds() / 20;
  snprintf(source, sizeof(source), "%ld10.1.1.2adminpw", slot);
  snprintf(before, sizeof(before), "%s", MD5Encryption(source));
  char brief[9];
  snprintf(brief, sizeof(brief), "%s", generate_BKey("10.1.1.2"));
  char key[33];
  snprintf(key, sizeof(key), "%s", generate_StarterKey("10.1.1.2"));
  snprintf(source, sizeof(source), "%ld10.1.1.2adminpw", sys_uptime_seconds() / 20);
  const char *const after = MD5Encryption(source);
  EXPECT_INT(strcmp(key, before) == 0 || strcmp(key, after) == 0, 1);
  EXPECT_INT(strncmp(brief, before, 8) == 0 || strncmp(brief, after, 8) == 0, 1);
  EXPECT_INT(strlen(brief), 8);
}

static void CheckList(void) {
  EXPECT_INT(clientauthinfo == NULL, 1);
  EXPECT_INT(cur_authinfo == NULL, 1);
  EXPECT_INT(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "admin", "pw", NULL, 1), 1);
  EXPECT_INT(clientAuthListAdd(&clientauthinfo, "10.1.1.2", "admin", "pw", NULL, 1), 0);
  EXPECT_INT(cur_authinfo == clientauthinfo, 1);
  EXPECT_TEXT(clientauthinfo->ip, "10.1.1.2");
  EXPECT_INT(checkClientAuthIp(clientauthinfo, "10.1.1.2", NULL, 1) == clientauthinfo, 1);
  EXPECT_INT(checkClientAuthIp(clientauthinfo, "10.1.1.2", NULL, 2) == NULL, 1);
  EXPECT_INT(check_StarterAuthIP("10.1.1.2", NULL), 0);
  EXPECT_INT(check_StarterAuthIP("10.1.1.3", NULL), -1);
  printList(clientauthinfo);
  EXPECT_INT(clientAuthListDel(&clientauthinfo, "10.1.1.2", NULL, 1), 1);
  EXPECT_INT(clientAuthListDel(&clientauthinfo, NULL, NULL, 1), 0);
  EXPECT_INT(clientauthinfo == NULL, 1);
  EXPECT_INT(cur_authinfo == NULL, 1);
}

static void CheckLogin(void) {
  char request[64];
  snprintf(request, sizeof(request), "kioAppKey= %s", generate_StarterKey("10.1.1.2"));
  EXPECT_INT(starter_auth_check(request, "10.1.1.3", ""), -1);
  EXPECT_INT(starter_auth_check(request, "10.1.1.2", ""), 0);
  EXPECT_INT(check_StarterAuthIP("10.1.1.2", ""), 0);
  EXPECT_INT(clientAuthListDel(&clientauthinfo, NULL, NULL, 1), 0);
}

void CheckAuthCalls(void) {
  ClearStore();
  SetNode("/sys/user:1/password", "pw");
  CheckDigests();
  CheckKeys();
  CheckList();
  CheckLogin();
}
