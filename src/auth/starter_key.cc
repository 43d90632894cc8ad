// Keys made from the administrator password: made for the host, and checked in requests.
#include <cstring>

#include "auth/client_list.h"
#include "auth/exported_data.h"
#include "auth/md5.h"
#include "kioapp/auth.h"
#include "kioapp/platform.h"
#include "platform/log.h"
#include "platform/nodes.h"
#include "platform/store.h"
#include "platform/text.h"
#include "platform/wipe.h"

namespace kio::auth {
namespace {

using platform::TextBuffer;
using platform::TextView;
using platform::ViewOf;

constexpr long kSlotSeconds = 20;
// How many time slots have a good key: the one before the present one, the present one, and those
// that follow.
constexpr int kSlots = 5;
constexpr char kUserName[] = "admin";
constexpr int kFullKeyBytes = 16;
constexpr int kShortKeyBytes = 4;

// The administrator password. The object clears its copy when it ends.
class Password {
 public:
  Password() { platform::ReadStoreSecret(platform::kPasswordNode, text_); }
  ~Password() { platform::Wipe(text_); }
  Password(const Password&) = delete;
  Password& operator=(const Password&) = delete;

  [[nodiscard]] const char* c_str() const { return text_; }

 private:
  char text_[64];
};

// The text whose digest is the key of a time slot. The object clears its copy when it ends.
class KeySource {
 public:
  KeySource(const char* ip, const Password& password) {
    TextBuffer(rest_).Append(ViewOf(ip)).Append(kUserName).Append(password.c_str());
  }
  ~KeySource() { platform::Wipe(rest_); }
  KeySource(const KeySource&) = delete;
  KeySource& operator=(const KeySource&) = delete;

  using Text = char[128];

  // Writes the source of a time slot, cut to the room that `text` has, and returns it.
  TextView Write(long time_slot, Text& text) const {
    return TextBuffer(text).AppendNumber(static_cast<int>(time_slot)).Append(rest_).view();
  }

 private:
  Text rest_;  // what is the same for all time slots
};

// Writes the first `bytes` bytes of the present key to `string`.
char* WriteKey(const char* ip, int bytes) {
  const Password password;
  const KeySource source(ip, password);
  KeySource::Text text;
  Digest digest;
  Md5(source.Write(sys_uptime_seconds() / kSlotSeconds, text), digest);
  Hex2String(digest.bytes, DigestText(), bytes);
  WipeMd5Stack();
  platform::Wipe(text);
  platform::Wipe(digest);
  return DigestText();
}

// The key that a request holds.
struct ShownKey {
  const char* text = nullptr;  // null when there is none
  int bytes = 0;               // that are compared, two digits each
};

ShownKey FindKey(const char* request) {
  constexpr TextView kFullMarker = "kioAppKey=";
  constexpr TextView kShortMarker = "BKey=";
  // Quirk "full-marker-decides": the short key is then not looked at.
  if (const char* const full = std::strstr(request, kFullMarker.data())) {
    const char* const separator = full + kFullMarker.size();
    // Quirk "key-after-a-separator": one character before the key is skipped, whatever it is.
    return {*separator == '\0' ? separator : separator + 1, kFullKeyBytes};
  }
  if (const char* const brief = std::strstr(request, kShortMarker.data())) {
    return {brief + kShortMarker.size(), kShortKeyBytes};
  }
  return {};
}

// The value of a hexadecimal digit of lower case; -1 for any other character.
int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') {
    return digit - '0';
  }
  return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

// Reads the digits of a key. Returns false when the key is too short or holds another character: it
// is then the key of no time slot.
bool ReadKey(const ShownKey& key, Digest& digest) {
  const char* next = key.text;
  for (int i = 0; i < key.bytes; ++i) {
    const int high = DigitValue(*next);
    const int low = high < 0 ? -1 : DigitValue(next[1]);
    if (low < 0) {
      return false;
    }
    digest.bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
    next += 2;
  }
  return true;
}

// Compares the first `bytes` bytes, a multiple of four, in a time that does not depend on where the
// two differ.
bool IsSame(const Digest& first, const Digest& second, int bytes) {
  std::uint32_t difference = 0;
  for (int i = 0; i < bytes; i += static_cast<int>(sizeof(difference))) {
    difference |= LoadMd5Word(first.bytes + i) ^ LoadMd5Word(second.bytes + i);
  }
  return difference == 0;
}

// Whether the key is that of one of the time slots around `now`. All of them are compared even
// after one fits.
bool IsGoodKey(const ShownKey& key, long now, const char* ip, const Password& password) {
  Digest shown;
  if (!ReadKey(key, shown)) {
    return false;
  }
  const KeySource source(ip, password);
  // Quirk "slot-before-the-first": in the first slot after boot the one before is -1, and the
  // source holds that number.
  KeySource::Text text;
  Digest digest;
  bool is_good = false;
  for (int i = 0; i < kSlots; ++i) {
    Md5(source.Write(now / kSlotSeconds - 1 + i, text), digest);
    is_good |= IsSame(shown, digest, key.bytes);
  }
  WipeMd5Stack();
  platform::Wipe(text);
  platform::Wipe(digest);
  platform::Wipe(shown);
  return is_good;
}

}  // namespace
}  // namespace kio::auth

char* generate_StarterKey(const char* ip) {
  return kio::auth::WriteKey(ip, kio::auth::kFullKeyBytes);
}

char* generate_BKey(const char* ip) { return kio::auth::WriteKey(ip, kio::auth::kShortKeyBytes); }

int starter_auth_check(const char* request, const char* ip, const char* session) {
  kio::platform::LogEntry("starter_auth_check");
  const long now = sys_uptime_seconds();
  const kio::auth::Password password;
  if (request == nullptr || ip == nullptr) {
    return -1;
  }
  const kio::auth::ShownKey key = kio::auth::FindKey(request);
  if (key.text == nullptr) {
    return -1;
  }
  KIO_LOG(kio::platform::kLogDetail, "match_buff = %s, kioApp_ip=%s, time=%ld\n", key.text, ip,
          now);
  // Quirk "keys-may-be-repeated": nobody notes that a key was shown before.
  if (!kio::auth::IsGoodKey(key, now, ip, password)) {
    return -1;
  }
  kio::platform::LogTime(kio::platform::kLogEvent);
  KIO_LOG(kio::platform::kLogEvent, "starter key success, logout=%ld\n",
          static_cast<long>(kio::auth::LogoutAfter(now)));
  clientAuthListAdd(&kio::Clients(), ip, kio::auth::kUserName, password.c_str(), session,
                    KIOAPP_MATCH_ADDRESS);
  return 0;
}
