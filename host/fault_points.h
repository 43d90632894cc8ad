// Where the faults that a test bench asks for meet the host. Without such faults a place only asks
// whether a pointer is null.
#ifndef HOST_FAULT_POINTS_H
#define HOST_FAULT_POINTS_H

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kiohost {

class FaultPoints {
 public:
  virtual ~FaultPoints() = default;

  // For the thread of the library. What takes its time by a fault is waited for in these calls.

  enum class Read { kAsEver, kFails, kFindsNothing };
  // Told of each read of the library. Those that are not noted are the host's own look at it.
  virtual Read OnRead(const std::string& path, bool is_noted) = 0;
  // Told of each write of the library. Returns whether it fails.
  virtual bool OnWrite(const std::string& path) = 0;
  // Asked before anything is written to the store, and before a transaction begins.
  virtual bool IsStoreFull() = 0;
  virtual bool IsStoreLocked() = 0;

  struct Command {
    std::optional<int> status;  // as of waitpid: the command does not run
    std::string instead;        // runs in its place; empty: the command itself
  };
  virtual Command OnCommand(const std::string& command) = 0;

  // The radios that change their channel now, as their drivers do.
  struct RadioMove {
    std::string radio;
    std::string channel;
  };
  virtual std::vector<RadioMove> TakeRadioMoves() = 0;

  // For the thread of the sockets.

  struct Request {
    const std::string& method;
    const std::string& path;
    const std::string& from;
  };
  struct Wire {
    enum class Kind { kNone, kDelay, kDrip, kCut, kReset, kAnswer };
    Kind kind = Kind::kNone;
    int64_t amount = 0;       // milliseconds, bytes a second, bytes, or the status
    int64_t retry_after = 0;  // seconds
  };
  // Told of each request that is there as a whole.
  virtual Wire OnRequest(const Request& request) = 0;
  // Told of each connection. Returns whether it is refused.
  virtual bool OnConnection(const std::string& from) = 0;
};

// Null as long as there is no rule that could act.
inline std::atomic<FaultPoints*> g_fault_points = nullptr;

// How many hold the faults back. Only the thread of the library asks and does so.
inline int g_fault_holders = 0;

// As long as one lives, nothing goes wrong in the thread of the library: what a test bench does to
// the store is no work of the router.
class WithoutFaults {
 public:
  WithoutFaults() { ++g_fault_holders; }
  ~WithoutFaults() { --g_fault_holders; }
  WithoutFaults(const WithoutFaults&) = delete;
  WithoutFaults& operator=(const WithoutFaults&) = delete;
};

// For the thread of the library.
inline FaultPoints* LibraryFaults() {
  FaultPoints* const points = g_fault_points;
  return points == nullptr || g_fault_holders > 0 ? nullptr : points;
}

// For the thread of the sockets.
inline FaultPoints* WireFaults() { return g_fault_points; }

}  // namespace kiohost

#endif  // HOST_FAULT_POINTS_H
