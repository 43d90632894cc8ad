#include "change_guard.h"

#include <string>
#include <string_view>

#include "settings_tag.h"

namespace kiohost {

std::optional<Reply> ChangeGuard::RefuseLook(const RequestView& request) const {
  const std::optional<std::string_view> wanted = request.Header(MHD_HTTP_HEADER_IF_MATCH);
  if (!wanted) {
    return std::nullopt;
  }
  const std::string tag = SettingsTag(exchange_->applies()->Last());
  return MatchesTag(*wanted, tag)
             ? std::nullopt
             : std::optional(ErrorReply(MHD_HTTP_PRECONDITION_FAILED,
                                        "the settings are others by now: " + tag));
}

std::optional<Reply> ChangeGuard::RefuseChange(const RequestView& request) const {
  const std::optional<WayBack::Pending> pending = exchange_->pending();
  if (!pending) {
    return RefuseLook(request);
  }
  return TryLater(MHD_HTTP_CONFLICT, "other settings wait for their confirmation",
                  pending->seconds_left);
}

}  // namespace kiohost
