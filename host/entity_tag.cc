#include "entity_tag.h"

#include <cstdint>
#include <string>

#include "random_id.h"
#include "settings_tag.h"

namespace kiohost {
namespace {

// FNV-1a. A change that nobody makes on purpose to go unseen is seen.
int64_t DigestOf(std::string_view text) {
  constexpr uint64_t kBasis = 14695981039346656037U;
  constexpr uint64_t kPrime = 1099511628211U;
  uint64_t digest = kBasis;
  for (const char c : text) {
    digest = (digest ^ static_cast<unsigned char>(c)) * kPrime;
  }
  return static_cast<int64_t>(digest);
}

}  // namespace

Reply WithEntityTag(Reply reply, const RequestView& request) {
  if (reply.status != MHD_HTTP_OK) {
    return reply;
  }
  const std::string tag = IdText(DigestOf(reply.body));
  reply.cache_control = "private, no-cache";
  reply.headers.emplace_back(MHD_HTTP_HEADER_ETAG, "\"" + tag + "\"");
  const std::optional<std::string_view> known = request.Header(MHD_HTTP_HEADER_IF_NONE_MATCH);
  if (known && MatchesWeakly(*known, tag)) {
    reply.status = MHD_HTTP_NOT_MODIFIED;
    reply.body.clear();
  }
  return reply;
}

}  // namespace kiohost
