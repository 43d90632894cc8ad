#include "control/control_port.h"

#include <cstdio>
#include <utility>

#include "index_routes.h"
#include "listener.h"
#include "printable_text.h"
#include "web_filters.h"

namespace kiohost {

ControlPort::ControlPort(Settings settings, const LibraryDesk* bell, Store* reader)
    : settings_(std::move(settings)),
      desk_(bell),
      server_(&router_, &desk_),
      sockets_(&server_, nullptr, &desk_) {
  AddWebFilters(reader, settings_.names, &router_);
  AddIndexRoutes(settings_.openapi, &router_);
}

Status ControlPort::Start() {
  if (runs_) {
    return {};
  }
  if (!desk_.valid()) {
    return {ExitCode::kNetwork, "the system has no descriptor left"};
  }
  FileDescriptor listener;
  Status status = Listen(settings_.listen, &settings_.port, &listener);
  if (status.ok()) {
    status = sockets_.Start(std::move(listener));
  }
  runs_ = status.ok();
  if (runs_) {
    PrintLine(stdout, "control port on http://" + HostAndPort(settings_.listen, settings_.port));
  }
  return status;
}

}  // namespace kiohost
