#include "request_view.h"

#include <sys/socket.h>

#include <cstring>

#include "peer_address.h"

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

std::string RequestView::peer_address() const {
  const MHD_ConnectionInfo* info =
      MHD_get_connection_info(connection_, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
  return info == nullptr ? std::string() : AddressText(info->client_addr);
}

std::string RequestView::local_address() const {
  const MHD_ConnectionInfo* info =
      MHD_get_connection_info(connection_, MHD_CONNECTION_INFO_CONNECTION_FD);
  sockaddr_storage address = {};
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  return info != nullptr && getsockname(info->connect_fd, generic, &length) == 0
             ? AddressText(generic)
             : std::string();
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
