// What the key functions of the released library leave behind on the stack.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "kioapp/kioapp.h"
#include "painted_stack.h"
#include "testing/memory_store.h"

namespace kio::test {
namespace {

constexpr char kPassword[] = "Zq7#Wv9!Kx2@Ty5$Lm8%Np4&";
constexpr char kIp[] = "10.1.1.2";

char g_request[64];
int g_result = 0;
// Kept where the library's own copies do not lie.
unsigned char g_digest[16];
char g_key[33];

class SecretsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    daemon_log_file_size_k = 0;
    daemon_log_level = 7;
    StoreFactoryDevice();
    xset_str(kPassword, "%s", "/sys/user:1/password");
    MakeKey();
    // The first call of this program's vsnprintf looks up libc's, which saves all registers.
    logPrintf(7, "text\n");
  }
  void TearDown() override {
    clientAuthListDel(&clientauthinfo, nullptr, nullptr, 1);
    daemon_log_level = 5;
  }

  // The present key; the slot may change at any moment, so this is made anew for each use.
  static void MakeKey() {
    char source[128];
    std::snprintf(source, sizeof(source), "%ld%sadmin%s", sys_uptime_seconds() / 20, kIp,
                  kPassword);
    MD5Digest(source, 0, g_digest);
    Hex2String(g_digest, g_key, 16);
  }

  // Nothing of the password, of the key's digest or of its digits.
  static void ExpectNothingLeft(const PaintedStack& stack) {
    constexpr std::size_t kPiece = 4;
    for (std::size_t i = 0; i + kPiece <= std::strlen(kPassword); ++i) {
      EXPECT_FALSE(stack.Holds(kPassword + i, kPiece)) << "password, from character " << i;
    }
    for (std::size_t i = 0; i + kPiece <= sizeof(g_digest); ++i) {
      EXPECT_FALSE(stack.Holds(g_digest + i, kPiece)) << "digest, from byte " << i;
    }
    constexpr std::size_t kDigits = 8;
    for (std::size_t i = 0; i + kDigits <= std::strlen(g_key); ++i) {
      EXPECT_FALSE(stack.Holds(g_key + i, kDigits)) << "digits, from number " << i;
    }
  }
};

TEST_F(SecretsTest, AreFoundWhereTheyAreLeft) {
  PaintedStack stack;
  stack.Run([] {
    char copy[sizeof(kPassword)];
    std::memcpy(copy, kPassword, sizeof(copy));
    __asm__ volatile("" : : "r"(copy) : "memory");
  });
  EXPECT_TRUE(stack.Holds(kPassword, 4));
}

TEST_F(SecretsTest, MadeKeysLeaveNothing) {
  for (void (*const make)() : {+[] { generate_StarterKey(kIp); }, +[] { generate_BKey(kIp); }}) {
    PaintedStack stack;
    stack.Run(make);
    MakeKey();
    ExpectNothingLeft(stack);
  }
}

TEST_F(SecretsTest, DigestsLeaveNothing) {
  static char g_source[128];
  std::snprintf(g_source, sizeof(g_source), "%ld%sadmin%s", sys_uptime_seconds() / 20, kIp,
                kPassword);
  PaintedStack stack;
  stack.Run([] { MD5Digest(g_source, 0, g_digest); });
  Hex2String(g_digest, g_key, 16);
  ExpectNothingLeft(stack);
  PaintedStack other;
  other.Run([] { MD5Encryption(g_source); });
  ExpectNothingLeft(other);
}

TEST_F(SecretsTest, RefusedKeysLeaveNothing) {
  for (const char* const request :
       {"", "BKey=00000000", "kioAppKey= 00000000000000000000000000000000", "kioAppKey="}) {
    std::snprintf(g_request, sizeof(g_request), "%s", request);
    PaintedStack stack;
    stack.Run([] { g_result = starter_auth_check(g_request, kIp, ""); });
    EXPECT_EQ(g_result, -1);
    MakeKey();
    ExpectNothingLeft(stack);
  }
}

// At level 5: the log shows a request's key at level 7, on its way to the file.
TEST_F(SecretsTest, LoginsLeaveNothing) {
  daemon_log_level = 5;
  MakeKey();
  std::snprintf(g_request, sizeof(g_request), "kioAppKey= %s", g_key);
  PaintedStack stack;
  stack.Run([] { g_result = starter_auth_check(g_request, kIp, ""); });
  EXPECT_EQ(g_result, 0);
  ExpectNothingLeft(stack);
}

}  // namespace
}  // namespace kio::test
