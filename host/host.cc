#include "host.h"

#include <sys/select.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

#include "actions.h"
#include "backup_routes.h"
#include "command.h"
#include "confirm_routes.h"
#include "connection.h"
#include "device_routes.h"
#include "firmware_routes.h"
#include "index_routes.h"
#include "listener.h"
#include "login_routes.h"
#include "printable_text.h"
#include "random_id.h"
#include "settings_routes.h"
#include "signals.h"
#include "variable_routes.h"
#include "web_filters.h"

namespace kiohost {
namespace {

struct DescriptorSets {
  DescriptorSets() {
    FD_ZERO(&read);
    FD_ZERO(&write);
    FD_ZERO(&except);
  }
  fd_set read;
  fd_set write;
  fd_set except;

  // Whether nothing is ready.
  bool IsEmpty(int max_fd) const {
    for (int fd = 0; fd <= max_fd; ++fd) {
      if (FD_ISSET(fd, &read) || FD_ISSET(fd, &write) || FD_ISSET(fd, &except)) {
        return false;
      }
    }
    return true;
  }
};

void WaitUntil(std::chrono::steady_clock::time_point end) {
  while (!StopRequested()) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) {
      return;
    }
    DescriptorSets sets;
    WaitForEvents(-1, &sets.read, &sets.write, &sets.except, static_cast<long>(left.count()));
  }
}

}  // namespace

Host::Host(Store* store, const Settings& settings)
    : store_(store),
      settings_(settings),
      exchange_(store, settings.temp_dir),
      confirmations_(&exchange_, WhoComes()),
      variable_list_(store, settings.catalogue),
      value_history_(store),
      variables_(store, &exchange_, &events_),
      backup_(store, settings.catalogue),
      firmware_(store, &events_, settings.temp_dir, settings.state_dir + "/firmware.partition"),
      channel_watch_(store, &events_),
      server_(&router_) {
  AddWebFilters(store, settings.names, &router_);
  if (!settings.open) {
    AddLoginFilter(&clients_, &router_);
  }
  const ChangeGuard guard(&exchange_);
  const SettingsRoom settings_room = {&exchange_, &events_, &confirmations_, &variable_list_,
                                      &value_history_};
  AddSettingsRoutes(settings_room, &router_);
  AddBackupRoutes(&backup_, settings_room, &router_);
  AddConfirmRoutes(&confirmations_, &events_, &router_);
  AddDeviceRoutes(
      store, &events_,
      {IdText(RandomNumber()) + IdText(RandomNumber()), [this] { return StateWord(); }, &exchange_},
      &router_);
  AddVariableRoutes({&variables_, &variable_list_, store, exchange_.applies(), &value_history_},
                    guard, &router_);
  AddLoginRoutes(&clients_, &router_);
  AddFirmwareRoutes(&firmware_, guard, &router_);
  AddIndexRoutes(settings.openapi, &router_);
}

Confirmations::Arrivals Host::WhoComes() const {
  if (settings_.open) {
    return {Connection::Count,
            [](const RequestView& request) { return request.connection_number(); },
            "connect anew first: a confirmation takes a connection from after the change"};
  }
  return {[this] { return clients_.logins(); },
          [this](const RequestView& request) { return clients_.LastLogin(request.peer_address()); },
          "log in anew first: a confirmation takes a login from after the change"};
}

void Host::RunOverdueActions() {
  GoBackWhenDue();
  // Its actions are among those that are due.
  after_reply_.reset();
  const unsigned int mask = exchange_.RunDueActions();
  if (mask != 0) {
    PrintLine(stdout, "making up for what was applied before this start and is not in force:");
    exchange_.FinishCommit(mask, ReportActions(mask, &events_));
  }
}

Status Host::Start() {
  FileDescriptor listener;
  Status status = Listen(settings_.listen, &settings_.port, &listener);
  if (status.ok()) {
    status = server_.Start(std::move(listener));
  }
  if (status.ok()) {
    PrintLine(stdout, "listening on http://" + HostAndPort(settings_.listen, settings_.port) + "/");
  }
  return status;
}

Status Host::Run() {
  Status status;
  while (status.ok() && !StopRequested()) {
    WaitAndServe();
    GoBackWhenDue();
    status = RunAfterReplyWhenReady();
  }
  server_.Stop();
  TakeAfterReply();
  if (after_reply_) {
    after_reply_->run();
  }
  return status;
}

void Host::TakeAfterReply() {
  if (!after_reply_) {
    after_reply_ = server_.TakeAfterReply();
  }
}

void Host::GoBackWhenDue() {
  TakeAfterReply();
  if (after_reply_) {
    return;  // one thing after the other
  }
  const std::optional<WayBack::Pending> pending = exchange_.pending();
  if (!pending || pending->seconds_left > 0) {
    return;
  }
  AfterReply work;
  const Status status = GoBack(&exchange_, &events_, "as no confirmation came", &work);
  if (status.ok()) {
    after_reply_ = std::move(work);
  } else {
    PrintError("the settings cannot go back yet: " + status.reason());
  }
}

void Host::WaitAndServe() {
  DescriptorSets sets;
  int max_fd = -1;
  server_.AddDescriptors(&sets.read, &sets.write, &sets.except, &max_fd);
  WaitForEvents(max_fd, &sets.read, &sets.write, &sets.except, MillisecondsToWait());
  clients_.SweepIfDue();
  channel_watch_.CheckWhenDue();
  NoteEndedProcesses();
  server_.Run(sets.read, sets.write, sets.except);
  if (!store_->CheckpointWhenDue(sets.IsEmpty(max_fd) && !after_reply_)) {
    PrintError("the store's log could not be brought into its file; it is tried again");
  }
}

// The channels are checked so often that the sweep of the clients needs no time of its own.
long Host::MillisecondsToWait() const {
  const long look = channel_watch_.MillisecondsToWait();
  return std::min(look, server_.MillisecondsToWait().value_or(look));
}

const char* Host::StateWord() const {
  if (after_reply_ && settings_.real_waits && after_reply_->wait_seconds > 0) {
    return "away";
  }
  return server_.IsTurnTaken() ? "busy" : "ready";
}

Status Host::RunAfterReplyWhenReady() {
  TakeAfterReply();
  if (!after_reply_ || (after_reply_->ready && !after_reply_->ready())) {
    return {};
  }
  if (settings_.real_waits && after_reply_->wait_seconds > 0) {
    return RunAfterReplyWhileAway();
  }
  after_reply_->run();
  after_reply_.reset();
  server_.EndTurn();
  return {};
}

// Does the work after a reply as a router does: it cannot be reached meanwhile, and is back when
// the app was told.
Status Host::RunAfterReplyWhileAway() {
  const int seconds = after_reply_->wait_seconds;
  const auto back = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  server_.Stop();
  PrintLine(stdout, "away for " + std::to_string(seconds) + " s");
  after_reply_->run();
  after_reply_.reset();
  server_.EndTurn();
  WaitUntil(back);
  return StopRequested() ? Status() : Start();
}

}  // namespace kiohost
