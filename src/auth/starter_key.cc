// Keys made from the administrator password: made for the host, and checked in requests.
#include <algorithm>
#include <cstring>

#include "auth/client_list.h"
#include "auth/exported_data.h"
#include "auth/md5.h"
#include "kioapp/auth.h"
#include "kioapp/platform.h"
#include "platform/inline.h"
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

// The texts whose digests are the keys of the time slots: the number of the slot, and behind it
// what is the same for all. The object clears them when it ends.
class KeySource {
 public:
  KeySource(const char* ip, const Password& password)
      : size_(TextBuffer(rest(), kSize)
                  .Append(ViewOf(ip))
                  .Append(kUserName)
                  .Append(password.c_str())
                  .size()) {}
  ~KeySource() { platform::Wipe(text_); }
  KeySource(const KeySource&) = delete;
  KeySource& operator=(const KeySource&) = delete;

  // The source of a time slot, cut to 127 characters, until the next call.
  TextView Of(int time_slot) {
    char& last_digit = rest()[-1];
    // Mostly nothing but the last digit differs from the slot before.
    if (time_slot > 0 && time_slot_ == time_slot - 1 && last_digit != '9') {
      ++last_digit;
    } else {
      begin_ = platform::WriteNumberBefore(rest(), time_slot);
    }
    time_slot_ = time_slot;
    return {begin_, std::min(static_cast<std::size_t>(rest() - begin_) + size_, kSize - 1)};
  }

 private:
  static constexpr std::size_t kSize = 128;
  static constexpr std::size_t kNumberSize = 12;

  char* rest() { return text_ + kNumberSize; }

  char text_[kNumberSize + kSize];
  std::size_t size_;  // of the rest
  const char* begin_ = nullptr;
  int time_slot_ = -1;  // of the number in the text
};

// Writes the first `bytes` bytes of the present key to `string`.
char* WriteKey(const char* ip, int bytes) {
  const Password password;
  KeySource source(ip, password);
  Digest digest;
  Md5(source.Of(static_cast<int>(sys_uptime_seconds() / kSlotSeconds)), digest);
  Hex2String(digest.bytes, DigestText(), bytes);
  WipeMd5Stack();
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

// Compares the first bytes, those of a short or of a full key, in a time that does not depend on
// where the two differ.
bool IsSame(const Digest& first, const Digest& second, int bytes) {
  const auto difference = [&](int i) KIO_INLINE {
    std::uint32_t words[2];
    std::memcpy(&words[0], first.bytes + i, sizeof(words[0]));
    std::memcpy(&words[1], second.bytes + i, sizeof(words[1]));
    return words[0] ^ words[1];
  };
  static_assert(kShortKeyBytes == 4 && kFullKeyBytes == 16);
  const std::uint32_t behind_short = difference(4) | difference(8) | difference(12);
  return (difference(0) | (bytes == kFullKeyBytes ? behind_short : 0)) == 0;
}

// Whether the key is that of one of the time slots around `now`. All of them are compared even
// after one fits.
bool IsGoodKey(const ShownKey& key, long now, const char* ip, const Password& password) {
  Digest shown = {};
  if (!ReadKey(key, shown)) {
    return false;
  }
  KeySource source(ip, password);
  // Quirk "slot-before-the-first": in the first slot after boot the one before is -1, and the
  // source holds that number.
  Digest digest;
  bool is_good = false;
  for (int i = 0; i < kSlots; ++i) {
    Md5(source.Of(static_cast<int>(now / kSlotSeconds - 1 + i)), digest);
    is_good |= IsSame(shown, digest, key.bytes);
  }
  WipeMd5Stack();
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
