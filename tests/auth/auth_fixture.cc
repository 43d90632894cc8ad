#include "auth_fixture.h"

#include <cstdlib>

#include "testing/heap_chars.h"

namespace kio::test {

Sandbox& TheSandbox() {
  static Sandbox sandbox;
  return sandbox;
}

AuthTest::AuthTest() {
  host_.Reset();
  sandbox_ = Sandbox();
  log_file::Start(5);
  clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0);
  cur_authinfo = nullptr;
}

AuthTest::~AuthTest() {
  daemon_log_level = 5;
  clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0);
  sandbox_ = Sandbox();
}

ClientAuthInfo* AuthTest::Add(const std::string& ip, int session, int mode) {
  TheSandbox().random = session;
  EXPECT_EQ(clientAuthListAdd(&clientauthinfo, ip.c_str(), "admin", "secret", nullptr, mode), 1);
  return cur_authinfo;
}

std::vector<std::string> AuthTest::Addresses() {
  std::vector<std::string> addresses;
  for (const ClientAuthInfo* client = clientauthinfo; client != nullptr; client = client->next) {
    addresses.emplace_back(client->ip);
  }
  return addresses;
}

std::string AuthTest::Md5Text(const std::string& text) {
  HeapChars<16, unsigned char> digest;
  MD5Digest(text.c_str(), 0, digest);
  HeapChars<33> digits;
  Hex2String(digest, digits, 16);
  return digits.array();
}

}  // namespace kio::test

using kio::test::TheSandbox;

// The linker leads the calls of this program to these and to the real ones.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __real_calloc(size_t count, size_t size);
void __real_free(void* memory);

void* __wrap_calloc(size_t count, size_t size) {
  return TheSandbox().calloc_fails ? nullptr : __real_calloc(count, size);
}

void __wrap_free(void* memory) {
  kio::test::Sandbox& sandbox = TheSandbox();
  if (memory != nullptr && memory == sandbox.watched) {
    const char* const password = sandbox.watched->password;
    sandbox.freed_password = std::string(password, sizeof(sandbox.watched->password));
    sandbox.watched = nullptr;
  }
  __real_free(memory);
}

int __wrap_rand() { return TheSandbox().random; }

void __wrap_srand(unsigned seed) { TheSandbox().seeds.push_back(seed); }

std::time_t __wrap_time(std::time_t* /*now*/) { return TheSandbox().time; }
}
// NOLINTEND(bugprone-reserved-identifier)
