// Fifty clients that behave, each at its own work, and know which answers are right.
#ifndef TESTS_FLOOD_MIXED_CLIENTS_H
#define TESTS_FLOOD_MIXED_CLIENTS_H

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "http_client.h"

// Clients of one kind: what they ask for, and which answers to the asking are right. A client
// counts its requests from 0 on.
struct ClientKind {
  const char* name;
  int clients;
  std::chrono::milliseconds pause;
  std::function<std::string()> request;
  std::function<bool(const HttpResponse& answer)> is_right;
};

struct KindTally {
  long right = 0;
  long wrong = 0;
  std::vector<long> waits_us;  // of this round
  std::string first_wrong;
};

class MixedClients {
 public:
  // Fills the kinds; what variables hold is asked from the host first.
  explicit MixedClients(int port);

  // Has all of them work for so long. Each logs in first, as an app does.
  void Work(std::chrono::seconds time);

  const std::vector<ClientKind>& kinds() const { return kinds_; }
  const std::vector<KindTally>& tallies() const { return tallies_; }
  int clients() const;
  long right() const;
  long wrong() const;

  // The events that were read, and the streams in which one was missing or twice.
  long events() const { return events_; }
  long broken_streams() const { return broken_streams_; }

 private:
  void Ask(size_t kind, const std::string& from);
  void ReadEvents(const std::string& from);
  bool LogIn(const std::string& from) const;
  void Count(size_t kind, const HttpResponse& answer, std::chrono::steady_clock::duration wait);

  int port_;
  std::vector<ClientKind> kinds_;
  std::vector<KindTally> tallies_;
  std::mutex mutex_;
  std::atomic<bool> stopping_{false};
  std::atomic<bool> streams_stopping_{false};
  std::atomic<long> events_{0};
  std::atomic<long> broken_streams_{0};
};

#endif  // TESTS_FLOOD_MIXED_CLIENTS_H
