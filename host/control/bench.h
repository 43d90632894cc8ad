// All that the control port does, put together: the host has it, or none of it exists.
#ifndef HOST_CONTROL_BENCH_H
#define HOST_CONTROL_BENCH_H

#include <functional>
#include <string>

#include "control/clock_driver.h"
#include "control/control_port.h"
#include "control/faults.h"
#include "control/journal_stream.h"
#include "control/log_tail.h"
#include "control/router_state.h"
#include "control/snapshot_routes.h"
#include "http_server.h"
#include "journal.h"
#include "library_desk.h"
#include "status.h"
#include "store.h"

namespace kiohost {

// Belongs to the thread of the library.
class Bench {
 public:
  struct Settings {
    ControlPort::Settings port;
    bool show_secrets = false;  // in the journal
    // Puts the store back to a profile, whose name may be empty.
    std::function<Status(const std::string& name)> write_profile;
  };

  struct Host {
    RouterParts parts;
    HttpServer* server;       // the router's, whose requests the journal notes
    const LibraryDesk* bell;  // is told of work for the thread of the library
    Store* reader;            // the store, for the thread of the control port
    std::string temp_dir;
    std::string log;   // the library's log, in a file
    std::string boot;  // begins the ids of entries of the journal
    ClockDriver::Parts clock;
    std::function<bool()> is_at_rest;  // whether nothing is left to do, not even later
    std::function<void()> publish;     // tells the other thread what the state has become
  };

  Bench(Settings settings, const Host& host);
  ~Bench() { TheJournal().set_listener(nullptr); }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  Status Start() { return port_.Start(); }
  void Stop() { port_.Stop(); }

  // Does what a client of the control port wants, if one wants something.
  void RunJob();

  // Notes what the library has logged since.
  void NoteLog();

 private:
  void BeginJournal(const Host& host, bool show_secrets);

  ClockDriver clock_driver_;
  LogTail log_tail_;
  Faults faults_;
  Snapshots snapshots_;
  JournalStreams journal_streams_;
  ControlPort port_;
};

}  // namespace kiohost

#endif  // HOST_CONTROL_BENCH_H
