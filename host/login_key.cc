#include "login_key.h"

#include <nettle/md5.h>
#include <nettle/memops.h>
#include <string.h>

#include <array>
#include <optional>
#include <string_view>

namespace kiohost {
namespace {

constexpr long kSlotSeconds = 20;
constexpr int kSlots = 5;
constexpr size_t kMostPassword = 63;
constexpr size_t kMostSource = 127;
constexpr size_t kFullKeyBytes = MD5_DIGEST_SIZE;
constexpr size_t kShortKeyBytes = 4;

using Digest = std::array<uint8_t, MD5_DIGEST_SIZE>;

// The key that a request shows, in digits and in bytes.
struct ShownKey {
  std::string_view digits;
  size_t bytes = 0;
};

// As the library looks for it: the marker of the full key decides, and one character behind it is
// skipped.
std::optional<ShownKey> FindKey(std::string_view request) {
  constexpr std::string_view kFullMarker = "kioAppKey=";
  constexpr std::string_view kShortMarker = "BKey=";
  if (const size_t full = request.find(kFullMarker); full != std::string_view::npos) {
    const std::string_view rest = request.substr(full + kFullMarker.size());
    return ShownKey{rest.substr(rest.empty() ? 0 : 1), kFullKeyBytes};
  }
  if (const size_t brief = request.find(kShortMarker); brief != std::string_view::npos) {
    return ShownKey{request.substr(brief + kShortMarker.size()), kShortKeyBytes};
  }
  return std::nullopt;
}

// The bytes of a key; nothing when it is too short or holds another character than a digit of lower
// case.
std::optional<Digest> ReadKey(const ShownKey& key) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  Digest bytes = {};
  for (size_t i = 0; i < key.bytes; ++i) {
    const std::string_view pair = key.digits.substr(std::min(2 * i, key.digits.size()), 2);
    if (pair.size() < 2 || pair.find_first_not_of(kDigits) != std::string_view::npos) {
      return std::nullopt;
    }
    bytes.at(i) =
        static_cast<uint8_t>(kDigits.find(pair[0]) * kDigits.size() + kDigits.find(pair[1]));
  }
  return bytes;
}

void Wipe(std::string* text) { explicit_bzero(text->data(), text->size()); }

Digest DigestOf(std::string_view text) {
  md5_ctx context = {};
  Digest digest = {};
  md5_init(&context);
  md5_update(&context, text.size(), reinterpret_cast<const uint8_t*>(text.data()));
  md5_digest(&context, digest.size(), digest.data());
  explicit_bzero(&context, sizeof context);
  return digest;
}

}  // namespace

bool HoldsGoodKey(const std::string& request, const std::string& address, std::string password,
                  long uptime) {
  // Like the library's, the texts end at a terminator.
  const std::optional<ShownKey> key = FindKey(std::string_view(request.c_str()));
  const std::optional<Digest> shown = key ? ReadKey(*key) : std::nullopt;
  bool is_good = false;
  std::string source;
  source.reserve(address.size() + password.size() + kMostSource);  // so that no copy is left behind
  for (int i = 0; shown && i < kSlots; ++i) {
    const auto slot = static_cast<int>(uptime / kSlotSeconds - 1 + i);
    source = std::to_string(slot);
    source.append(address).append("admin").append(password, 0, kMostPassword);
    const Digest good = DigestOf(std::string_view(source).substr(0, kMostSource));
    // Each slot is compared, whatever came of the one before.
    is_good = (memeql_sec(good.data(), shown->data(), key->bytes) != 0) || is_good;
  }
  Wipe(&source);
  Wipe(&password);
  return is_good;
}

}  // namespace kiohost
