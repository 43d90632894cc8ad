#include "control/bench.h"

#include <chrono>
#include <optional>
#include <utility>

#include "control/clock_routes.h"
#include "control/fault_routes.h"
#include "control/journal_routes.h"
#include "control/store_routes.h"
#include "host_clock.h"
#include "journal.h"
#include "secrets.h"

namespace kiohost {
namespace {

// The parameters of a request as one text.
std::string QueryText(const RequestTarget& target) {
  std::string text;
  for (const auto& [name, value] : target.arguments) {
    text.append(text.empty() ? "" : "&").append(name).append("=").append(value);
  }
  return text;
}

void NoteRequest(const HttpRequest& request, const Reply& reply) {
  const auto time = std::chrono::steady_clock::now() - request.begun();
  TheJournal().Add("request",
                   {{"method", request.view().method()},
                    {"path", request.view().path()},
                    {"query", QueryText(request.view().target())},
                    {"from", request.view().peer_address()},
                    {"status", reply.status},
                    {"ms", std::chrono::duration_cast<std::chrono::milliseconds>(time).count()}});
}

}  // namespace

Bench::Bench(Settings settings, const Host& host)
    : clock_driver_(&TheClock(), host.clock),
      log_tail_(host.log),
      faults_(FirmwareFaults(host.parts.firmware, host.parts.store, host.temp_dir)),
      snapshots_(Snapshots::Host{host.parts,
                                 [settle = host.clock.settle, is_at_rest = host.is_at_rest] {
                                   settle();
                                   return is_at_rest();
                                 },
                                 host.publish, std::move(settings.write_profile),
                                 [this] { faults_.RemoveAll(); }}),
      journal_streams_(&TheJournal(), host.boot),
      port_(std::move(settings.port), host.bell, host.reader) {
  AddClockRoutes(&clock_driver_, port_.router());
  const auto forget = [parts = host.parts] {
    // What was set by variables was made for other settings, and so were the values of clients.
    parts.variables->Discard();
    parts.history->Clear();
  };
  AddStoreRoutes(host.parts.store, host.reader, forget, port_.router());
  AddSnapshotRoutes(&snapshots_, port_.router());
  AddFaultRoutes(&faults_, port_.router());
  BeginJournal(host, settings.show_secrets);
  AddJournalRoutes(&TheJournal(), &journal_streams_, host.clock.settle, port_.router());
}

void Bench::BeginJournal(const Host& host, bool show_secrets) {
  TheJournal().Begin(show_secrets);
  for (const Node& node : host.parts.store->List()) {
    if (IsSecret(node.path)) {
      TheJournal().AddSecret(node.text);
    }
  }
  host.server->AddOnAnswer(NoteRequest);
  host.server->MeetFaults();
  TheJournal().set_listener([this] {
    if (journal_streams_.IsRead()) {
      port_.TellEntries();
    }
  });
}

void Bench::RunJob() {
  if (const std::optional<LibraryDesk::Job> job = port_.TakeJob()) {
    job->run();
    port_.TellJobDone();
  }
}

void Bench::NoteLog() {
  log_tail_.ReadNew([](const std::string& line) { TheJournal().AddLogLine(line); });
}

}  // namespace kiohost
