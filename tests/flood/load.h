// Clients of many kinds, all at once.
#ifndef TESTS_FLOOD_LOAD_H
#define TESTS_FLOOD_LOAD_H

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include "http_client.h"

// What became of the requests of one kind of clients.
struct Tally {
  explicit Tally(const char* clients) : name(clients) {}

  // Counts an answer, or that there was none (0).
  void Count(int status, std::chrono::steady_clock::duration wait = {});

  const char* name;
  std::atomic<long> answered{0};  // 2xx
  std::atomic<long> refused{0};   // 4xx and 5xx but 503
  std::atomic<long> full{0};      // 503
  std::atomic<long> silent{0};    // no answer
  std::atomic<long> longest_wait_us{0};
};

// Each kind of clients has addresses of its own, and fewer connections than would take the room of
// the honest ones.
class Load {
 public:
  void Start(int port);
  void Stop();

  Tally honest{"honest readers"};
  Tally changers{"honest changers"};
  Tally good{"flood of reads"};
  Tally churn{"connect, ask, cut"};
  Tally broken{"broken requests"};
  Tally gone{"documents, then gone"};
  Tally heads{"dripping heads"};
  Tally bodies{"dripping bodies"};
  Tally idle{"idle connections"};

  std::array<const Tally*, 9> tallies() const {
    return {&honest, &changers, &good, &churn, &broken, &gone, &heads, &bodies, &idle};
  }

 private:
  void ReadHonestly(const std::string& from);
  void ChangeHonestly(const std::string& from);
  void Flood(const std::string& from);
  void Churn(const std::string& from);
  void SendBroken(const std::string& from);
  void SendAndGo(const std::string& from);
  void Drip(const std::string& from, const std::string& begin, size_t connections, Tally* tally);
  void Pause(std::chrono::milliseconds time) const;

  int port_ = 0;
  std::atomic<bool> stopping_{false};
  std::vector<std::thread> threads_;
};

#endif  // TESTS_FLOOD_LOAD_H
