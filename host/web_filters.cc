#include "web_filters.h"

#include <strings.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "nodes.h"
#include "peer_address.h"

namespace kiohost {
namespace {

bool IsSameText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

bool IsPort(std::string_view text) {
  constexpr size_t kMostDigits = 5;
  return text.size() <= kMostDigits &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<Reply> JudgeHost(const RequestView& request, Store* store,
                               const std::vector<std::string>& names) {
  const std::vector<std::string> addresses = {
      request.local_address(),
      AddressText(std::string_view(store->Get(kLanAddressNode).value_or("")))};
  if (NamesRouter(request.host(), addresses, names)) {
    return std::nullopt;
  }
  return ErrorReply(MHD_HTTP_MISDIRECTED_REQUEST, "this is not the host that the request names");
}

// Called after JudgeHost, so the host of the request is the router.
std::optional<Reply> JudgeOrigin(const RequestView& request) {
  const std::optional<std::string_view> origin = request.Header(MHD_HTTP_HEADER_ORIGIN);
  const std::string own = "http://" + std::string(request.host());
  if (request.IsGet() || !origin || IsSameText(*origin, own)) {
    return std::nullopt;
  }
  return ErrorReply(MHD_HTTP_FORBIDDEN, "pages of another origin change nothing here");
}

std::optional<Reply> JudgeContentType(const RequestView& request) {
  const std::optional<std::string_view> type = request.Header(MHD_HTTP_HEADER_CONTENT_TYPE);
  if (!type || IsContentTypeTaken(*type)) {
    return std::nullopt;
  }
  return ErrorReply(MHD_HTTP_UNSUPPORTED_MEDIA_TYPE, "no resource takes this type of content");
}

}  // namespace

bool NamesRouter(std::string_view host, const std::vector<std::string>& addresses,
                 const std::vector<std::string>& names) {
  // The colons of an IPv6 address stand in brackets.
  const size_t colon = host.rfind(':');
  const size_t bracket = host.rfind(']');
  if (colon != std::string_view::npos && (bracket == std::string_view::npos || colon > bracket)) {
    if (!IsPort(host.substr(colon + 1))) {
      return false;
    }
    host = host.substr(0, colon);
  }
  if (host.empty()) {
    return false;
  }
  const std::string address = AddressText(host);
  return (!address.empty() &&
          std::find(addresses.begin(), addresses.end(), address) != addresses.end()) ||
         std::any_of(names.begin(), names.end(),
                     [host](const std::string& name) { return IsSameText(host, name); });
}

bool IsContentTypeTaken(std::string_view content_type) {
  std::string_view type = content_type.substr(0, content_type.find(';'));
  while (!type.empty() && (type.back() == ' ' || type.back() == '\t')) {
    type.remove_suffix(1);
  }
  constexpr std::string_view kTypes[] = {"application/json",
                                         "application/octet-stream",
                                         "application/x-www-form-urlencoded",
                                         "application/xml",
                                         "text/plain",
                                         "text/xml"};
  return std::any_of(std::begin(kTypes), std::end(kTypes),
                     [type](std::string_view taken) { return IsSameText(type, taken); });
}

void AddWebFilters(Store* store, std::vector<std::string> names, Router* router) {
  names.emplace_back("localhost");
  router->AddFilter([store, names = std::move(names)](const RequestView& request) {
    return JudgeHost(request, store, names);
  });
  router->AddFilter(JudgeOrigin);
  router->AddFilter(JudgeContentType);
}

}  // namespace kiohost
