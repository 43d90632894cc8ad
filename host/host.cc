#include "host.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>

#include "backup_routes.h"
#include "client_timeout.h"
#include "command.h"
#include "commit_report.h"
#include "confirm_routes.h"
#include "connection.h"
#include "device_routes.h"
#include "event_routes.h"
#include "firmware_routes.h"
#include "index_routes.h"
#include "journal.h"
#include "listener.h"
#include "login_routes.h"
#include "printable_text.h"
#include "random_id.h"
#include "settings_routes.h"
#include "settings_tag.h"
#include "signals.h"
#include "variable_routes.h"
#include "web_filters.h"

namespace kiohost {
namespace {

// The host looks about it once a second at least.
constexpr long kLongestTurn = 1000;

// Of the id of a start, in the ids of its events.
constexpr size_t kBootDigits = 8;
// The library's log, in the temporary directory.
constexpr char kLogName[] = "kiohost_log.txt";

}  // namespace

Host::Host(Store* store, Store* reader, Store* control_reader, const Settings& settings)
    : store_(store),
      settings_(settings),
      applies_(reader),
      way_back_(reader),
      catalogue_(reader, settings.catalogue),
      archive_(reader, settings.catalogue),
      clients_(reader, &events_),
      boot_id_(IdText(RandomNumber()) + IdText(RandomNumber())),
      event_streams_({&events_, boot_id_.substr(0, kBootDigits), LoginCheck()}),
      exchange_(store, settings.temp_dir),
      confirmations_(&exchange_, WhoComes()),
      variable_list_(store, settings.catalogue),
      variables_(store, &exchange_, &events_),
      backup_(store, settings.catalogue),
      firmware_(store, &events_, settings.temp_dir, settings.state_dir + "/firmware.partition"),
      channel_watch_(store, &events_),
      variable_names_(ReadVariableNames(variable_list_.variables())),
      server_(&router_, &desk_),
      sockets_(&server_, &clients_, &desk_) {
  AddWebFilters(reader, settings.names, &router_);
  if (!settings.open) {
    AddLoginFilter(&clients_, &router_);
  }
  const ChangeGuard guard(&exchange_);
  const SettingsRoom settings_room = {&exchange_,      &events_,        &confirmations_,
                                      &variable_list_, &value_history_, store};
  AddSettingsRoutes(settings_room, &published_, &router_);
  AddBackupRoutes(&backup_, &archive_, settings_room, &router_);
  AddConfirmRoutes(&confirmations_, &events_, &router_);
  AddDeviceRoutes(reader, &events_,
                  {boot_id_, [this] { return StateWord(); }, &applies_, &way_back_}, &router_);
  events_.set_listener([this] { desk_.TellEvents(); });
  AddEventRoutes(&event_streams_, &router_);
  AddVariableRoutes({&variables_,
                     &variable_list_,
                     store,
                     exchange_.applies(),
                     &value_history_,
                     {&catalogue_, reader, &applies_, &published_}},
                    guard, &router_);
  AddLoginRoutes(&clients_, &router_);
  AddFirmwareRoutes(&firmware_, guard, &published_, &router_);
  AddIndexRoutes(settings.openapi, &router_);
  if (settings.recorder != nullptr) {
    server_.AddOnAnswer(
        [recorder = settings.recorder](const HttpRequest& request, const Reply& reply) {
          recorder->Add(request, reply);
        });
  }
  if (settings.control) {
    AddControl(control_reader);
  }
}

void Host::AddControl(Store* control_reader) {
  bench_ = std::make_unique<Bench>(
      *settings_.control,
      Bench::Host{{store_, &clients_, &events_, &exchange_, &variables_, &firmware_,
                   &channel_watch_, &confirmations_, &value_history_},
                  &server_,
                  &desk_,
                  control_reader,
                  settings_.temp_dir,
                  settings_.temp_dir + "/" + kLogName,
                  boot_id_.substr(0, kBootDigits),
                  {[this](HostClock::Time now) { return NextDue(now); }, [this] { Settle(); }},
                  [this] { return IsAtRest(); },
                  [this] {
                    published_.result.Set(exchange_.last_result());
                    published_.firmware.Set(firmware_.last_status());
                  }});
}

bool Host::IsAtRest() const {
  return !away_until_ && !after_reply_ && !awaits_work_ && AlarmState() == Alarm::kNone;
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

std::function<bool(const std::string&)> Host::LoginCheck() {
  if (settings_.open) {
    return {};
  }
  return [this](const std::string& address) { return clients_.IsLoggedIn(address); };
}

void Host::RunOverdueActions() {
  GoBackWhenDue();
  // Its actions are among those that are due.
  after_reply_.reset();
  const unsigned int mask = store_->DueActions();
  if (mask != 0) {
    PrintLine(stdout, "making up for what was applied before this start and is not in force:");
    CommitReport report(&exchange_, &events_, mask);
    Exchange::RunActions(mask);
    report.Finish();
  }
}

Status Host::Start() {
  if (!desk_.valid()) {
    return {ExitCode::kNetwork, "the system has no descriptor left"};
  }
  if (bench_ != nullptr) {
    Status status = bench_->Start();
    if (!status.ok()) {
      return status;
    }
  }
  FileDescriptor listener;
  Status status = Listen(settings_.listen, &settings_.port, &listener);
  if (status.ok()) {
    status = sockets_.Start(std::move(listener));
  }
  if (status.ok()) {
    PrintLine(stdout, "listening on http://" + HostAndPort(settings_.listen, settings_.port) + "/");
  }
  return status;
}

Status Host::Run() {
  while (status_.ok() && !StopRequested()) {
    WaitAndDoWhatIsDue(kLongestTurn);
  }
  sockets_.Stop();
  TakeAfterReply();
  if (after_reply_) {
    after_reply_->run();
  }
  if (bench_ != nullptr) {
    bench_->Stop();
  }
  return status_;
}

void Host::WaitAndDoWhatIsDue(long most) {
  TheClock().RingWhenDue();
  if (away_until_) {
    WaitForEvents(desk_.work_descriptor(), std::min(most, MillisecondsToWait()));
    RunJobs();
    ComeBackWhenDue();
    return;
  }
  WaitAndWork(most);
  if (!away_until_) {
    GoBackWhenDue();
    RunAfterReplyWhenReady();
  }
  if (bench_ != nullptr) {
    bench_->NoteLog();
  }
}

long Host::MillisecondsToWait() const {
  long wait = away_until_ ? kLongestTurn : channel_watch_.MillisecondsToWait();
  for (const auto& moment : {away_until_, TheClock().alarm()}) {
    wait = moment ? TheClock().MillisecondsUntil(*moment, wait) : wait;
  }
  return wait;
}

void Host::TakeAfterReply() {
  if (after_reply_) {
    return;
  }
  after_reply_ = desk_.TakeAfterReply();
  turn_is_open_ = after_reply_.has_value();
  awaits_work_ = awaits_work_ && !turn_is_open_;
}

void Host::GoBackWhenDue() {
  TakeAfterReply();
  if (after_reply_ || awaits_work_) {
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

void Host::WaitAndWork(long most) {
  // The channels are looked at once a second.
  const bool has_work =
      WaitForEvents(desk_.work_descriptor(), std::min(most, MillisecondsToWait()));
  channel_watch_.CheckWhenDue();
  NoteEndedProcesses();
  if (published_.variables.Get() != nullptr && AlarmState() == Alarm::kNone) {
    PublishVariables(false);
  }
  RunJobs();
  TakeAfterReply();
  if (!store_->CheckpointWhenDue(!has_work && !after_reply_)) {
    PrintError("the store's log could not be brought into its file; it is tried again");
  }
}

void Host::RunJobs() {
  if (const std::optional<LibraryDesk::Job> job = desk_.TakeJob()) {
    Run(*job);
  }
  if (bench_ != nullptr) {
    bench_->RunJob();
  }
}

void Host::Run(const LibraryDesk::Job& job) {
  if (job.is_long) {
    PublishVariables(true);
  }
  awaits_work_ = job.run() || awaits_work_;
  published_.result.Set(exchange_.last_result());
  published_.firmware.Set(firmware_.last_status());
  // A deferred commit runs in the wait.
  PublishVariables(AlarmState() != Alarm::kNone);
  desk_.TellJobDone();
}

void Host::PublishVariables(bool library_is_busy) {
  if (!library_is_busy) {
    published_.variables.Set(nullptr);
    return;
  }
  const UnnotedStore look;
  published_.variables.Set(std::make_shared<const PublishedVariables>(PublishedVariables{
      variables_.ReadAll(variable_names_), SettingsTag(exchange_.applies()->Last())}));
  desk_.TellPublished();
}

// In the thread of the sockets.
const char* Host::StateWord() const {
  if (settings_.real_waits && server_.SecondsAway() > 0) {
    return "away";
  }
  // Nobody has the turn while settings go back because their time is over.
  const bool is_busy = server_.IsTurnTaken() || published_.variables.Get() != nullptr;
  return is_busy ? "busy" : "ready";
}

void Host::RunAfterReplyWhenReady() {
  TakeAfterReply();
  if (!after_reply_ || (after_reply_->ready && !after_reply_->ready())) {
    return;
  }
  if (settings_.real_waits && after_reply_->wait_seconds > 0) {
    RunAfterReplyWhileAway();
    return;
  }
  if (after_reply_->runs_commands) {
    PublishVariables(true);
  }
  after_reply_->run();
  after_reply_.reset();
  PublishVariables(false);
  if (std::exchange(turn_is_open_, false)) {
    desk_.TellTurnOver();
  }
}

// Does the work after a reply as a router does: it cannot be reached meanwhile, and is back when
// the app was told.
void Host::RunAfterReplyWhileAway() {
  const int seconds = after_reply_->wait_seconds;
  away_until_ = TheClock().Now() + std::chrono::seconds(seconds);
  sockets_.Stop();
  PrintLine(stdout, "away for " + std::to_string(seconds) + " s");
  after_reply_->run();
  after_reply_.reset();
  PublishVariables(false);
  turn_is_open_ = false;
  server_.EndTurn();
}

void Host::ComeBackWhenDue() {
  // A job may have moved the clock, and all be done.
  if (away_until_ && TheClock().Now() >= *away_until_ && !StopRequested()) {
    away_until_.reset();
    status_ = Start();
  }
}

std::optional<HostClock::Time> Host::NextDue(HostClock::Time now) {
  std::optional<HostClock::Time> next = away_until_;
  const auto consider = [&next, now](HostClock::Time moment) {
    if (moment > now && (!next || moment < *next)) {
      next = moment;
    }
  };
  if (const std::optional<WayBack::Pending> pending = exchange_.pending()) {
    consider(TheClock().MomentOf(TheClock().SteadySeconds() + pending->seconds_left));
  }
  consider(TheClock().MomentOf(clients_.NextSweep()));
  return next;
}

// An answer that its client does not read is not waited for any longer than the client is.
void Host::Settle() {
  const auto end = std::chrono::steady_clock::now() + ClientTimeout::kGrace;
  do {
    WaitAndDoWhatIsDue(awaits_work_ ? kLongestTurn : 0);
    clients_.SweepIfDue();
  } while (HasDueWork() && status_.ok() && !StopRequested() &&
           std::chrono::steady_clock::now() < end);
}

bool Host::HasDueWork() {
  const std::optional<HostClock::Time> alarm = TheClock().alarm();
  if (awaits_work_ || AlarmState() == Alarm::kFired || (alarm && *alarm <= TheClock().Now())) {
    return true;
  }
  if (away_until_) {
    return TheClock().Now() >= *away_until_;
  }
  if (after_reply_) {
    return !after_reply_->ready || after_reply_->ready();
  }
  const std::optional<WayBack::Pending> pending = exchange_.pending();
  return pending && pending->seconds_left <= 0;
}

}  // namespace kiohost
