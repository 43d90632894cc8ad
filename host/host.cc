#include "host.h"

#include <sys/select.h>

#include <chrono>
#include <cstdio>
#include <utility>

#include "actions.h"
#include "listener.h"
#include "signals.h"

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

Status Host::Start() {
  FileDescriptor listener;
  Status status = Listen(settings_.listen, &settings_.port, &listener);
  if (status.ok()) {
    status = server_.Start(std::move(listener));
  }
  if (status.ok()) {
    std::printf("listening on http://%s/\n", HostAndPort(settings_.listen, settings_.port).c_str());
  }
  return status;
}

Status Host::Run() {
  Status status;
  while (status.ok() && !StopRequested()) {
    WaitAndServe();
    if (const auto delivered = server_.TakeDelivered()) {
      status = FinishExchange(*delivered);
    }
  }
  server_.Stop();
  if (const auto delivered = server_.TakeDelivered()) {
    Commit(delivered->commit);
  }
  return status;
}

void Host::WaitAndServe() {
  DescriptorSets sets;
  int max_fd = -1;
  server_.AddDescriptors(&sets.read, &sets.write, &sets.except, &max_fd);
  WaitForEvents(max_fd, &sets.read, &sets.write, &sets.except, server_.MillisecondsToWait());
  server_.Run(sets.read, sets.write, sets.except);
}

Status Host::FinishExchange(const HttpServer::Delivered& delivered) {
  if (settings_.real_waits && delivered.wait_seconds > 0) {
    return CommitAway(delivered);
  }
  Commit(delivered.commit);
  server_.EndExchange();
  return {};
}

// Commits as a router does that goes away for it, and is back when the app was told it would be.
Status Host::CommitAway(const HttpServer::Delivered& delivered) {
  const auto back = std::chrono::steady_clock::now() + std::chrono::seconds(delivered.wait_seconds);
  server_.Stop();
  std::printf("away for %d s\n", delivered.wait_seconds);
  Commit(delivered.commit);
  server_.EndExchange();
  WaitUntil(back);
  return StopRequested() ? Status() : Start();
}

void Host::Commit(CommitKind kind) {
  for (const std::string& line : DescribeActions(exchange_.Commit(kind))) {
    std::printf("%s\n", line.c_str());
  }
}

}  // namespace kiohost
