// The host. The thread that calls it is the thread of the library: the only one that calls the
// library, runs its commands and writes the store. Another one serves the sockets.
#ifndef HOST_HOST_H
#define HOST_HOST_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apply_log.h"
#include "backup.h"
#include "channel_watch.h"
#include "clients.h"
#include "confirmations.h"
#include "control/bench.h"
#include "event_streams.h"
#include "events.h"
#include "exchange.h"
#include "firmware.h"
#include "host_clock.h"
#include "http_server.h"
#include "library_desk.h"
#include "published.h"
#include "record/recorder.h"
#include "reply.h"
#include "router.h"
#include "sockets_thread.h"
#include "status.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"
#include "variables.h"
#include "way_back.h"

namespace kiohost {

class Host {
 public:
  struct Settings {
    std::string listen;
    int port = 0;
    std::string temp_dir;
    std::string state_dir;
    Catalogue catalogue;
    std::string openapi;  // the file with the description of the interface
    bool real_waits = false;
    bool open = false;               // nobody needs to log in
    std::vector<std::string> names;  // the router's, in Host headers
    std::optional<Bench::Settings> control;
    Recorder* recorder = nullptr;  // for the thread of the sockets; null: nothing is recorded
  };

  // The store must be bound to the library. `reader` is the same store, for the thread of the
  // sockets, and `control_reader` for that of the control port, if there is one.
  Host(Store* store, Store* reader, Store* control_reader, const Settings& settings);
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Runs the actions that an earlier run of the host has left due, and prints so. To be called
  // before `Start`.
  void RunOverdueActions();

  // Listens, and prints where.
  Status Start();

  // Serves until SIGTERM, SIGINT or SIGHUP. Fails when the port is lost.
  Status Run();

 private:
  // How clients are told apart that have come after settings which are to be confirmed.
  Confirmations::Arrivals WhoComes() const;
  void AddControl(Store* control_reader);
  // Whether an address is logged in; empty when nobody needs to be.
  std::function<bool(const std::string&)> LoginCheck();
  void TakeAfterReply();
  void GoBackWhenDue();
  // One turn of the loop, with a wait of so many milliseconds at most.
  void WaitAndDoWhatIsDue(long most);
  void WaitAndWork(long most);
  void RunJobs();
  void ComeBackWhenDue();
  long MillisecondsToWait() const;
  // For the clock: the first moment after `now` at which something falls due, and all that is due.
  std::optional<HostClock::Time> NextDue(HostClock::Time now);
  void Settle();
  // Whether nothing is left to do, not even later.
  bool IsAtRest() const;
  bool HasDueWork();
  void Run(const LibraryDesk::Job& job);
  void PublishVariables(bool library_is_busy);
  const char* StateWord() const;
  void RunAfterReplyWhenReady();
  void RunAfterReplyWhileAway();

  Store* store_;
  Settings settings_;
  Router router_;
  // For the thread of the sockets.
  ApplyLog applies_;
  WayBack way_back_;
  VariableList catalogue_;
  Backup archive_;
  Clients clients_;
  std::string boot_id_;  // new at each start of the host
  Events events_;
  EventStreams event_streams_;
  Exchange exchange_;
  Confirmations confirmations_;
  VariableList variable_list_;
  ValueHistory value_history_;
  Variables variables_;
  Backup backup_;
  Firmware firmware_;
  ChannelWatch channel_watch_;
  std::vector<ListedVariable> variable_names_;
  PublishedState published_;
  LibraryDesk desk_;
  HttpServer server_;
  SocketsThread sockets_;
  // The work after the reply to the request whose turn it is.
  std::optional<AfterReply> after_reply_;
  bool turn_is_open_ = false;  // until that work is done; not that of a deadline
  bool awaits_work_ = false;   // until the reply of a request that leaves some is delivered
  // While the router cannot be reached: until when.
  std::optional<HostClock::Time> away_until_;
  Status status_;
  std::unique_ptr<Bench> bench_;
};

}  // namespace kiohost

#endif  // HOST_HOST_H
