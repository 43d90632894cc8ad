#include "request_view.h"

#include <strings.h>
#include <sys/socket.h>

#include <cstring>

#include "connection.h"
#include "peer_address.h"

namespace kiohost {

std::string_view RequestView::host() const {
  return target_.authority ? std::string_view(*target_.authority)
                           : Header(MHD_HTTP_HEADER_HOST).value_or("");
}

std::optional<std::string_view> RequestView::Header(const char* name) const {
  const char* value = nullptr;
  size_t length = 0;
  if (MHD_lookup_connection_value_n(connection_, MHD_HEADER_KIND, name, std::strlen(name), &value,
                                    &length) != MHD_YES) {
    return std::nullopt;
  }
  return value == nullptr ? std::string_view() : std::string_view(value, length);
}

std::optional<std::string_view> RequestView::Argument(const char* name) const {
  for (const auto& [argument, value] : target_.arguments) {
    if (strcasecmp(argument.c_str(), name) == 0) {
      return value;
    }
  }
  return std::nullopt;
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

unsigned long RequestView::connection_number() const {
  return Connection::Of(connection_)->number();
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
