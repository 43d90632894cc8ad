#include "request_view.h"

#include <cstring>

namespace kiohost {

std::optional<std::string_view> RequestView::Lookup(MHD_ValueKind kind, const char* name) const {
  const char* value = nullptr;
  size_t length = 0;
  if (MHD_lookup_connection_value_n(connection_, kind, name, std::strlen(name), &value, &length) !=
      MHD_YES) {
    return std::nullopt;
  }
  return value == nullptr ? std::string_view() : std::string_view(value, length);
}

std::optional<std::string_view> RequestView::Header(const char* name) const {
  return Lookup(MHD_HEADER_KIND, name);
}

std::optional<std::string_view> RequestView::Argument(const char* name) const {
  return Lookup(MHD_GET_ARGUMENT_KIND, name);
}

const sockaddr* RequestView::peer() const {
  const MHD_ConnectionInfo* info =
      MHD_get_connection_info(connection_, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
  return info == nullptr ? nullptr : info->client_addr;
}

std::optional<bool> FlagArgument(const RequestView& request, const char* name) {
  const std::optional<std::string_view> text = request.Argument(name);
  if (!text) {
    return false;
  }
  if (text != "0" && text != "1") {
    return std::nullopt;
  }
  return text == "1";
}

}  // namespace kiohost
