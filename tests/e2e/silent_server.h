// A server on the loopback address that takes connections and does not answer as it should.
#ifndef TESTS_E2E_SILENT_SERVER_H
#define TESTS_E2E_SILENT_SERVER_H

#include <atomic>
#include <string>
#include <thread>

class SilentServer {
 public:
  SilentServer();
  ~SilentServer();
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  // As `FirmwareServer::Proxy`.
  std::string Proxy() const { return "http://127.0.0.1:" + std::to_string(port_); }

  // Waits some seconds for a client. Returns whether there is one.
  bool WaitForClient();

  // From now on sends the client a piece of an answer, without end, every few milliseconds.
  void Drip();

  // Waits some seconds for the client to go away.
  bool WaitForClientToLeave() const;

 private:
  int port_ = 0;
  int listener_ = -1;
  int client_ = -1;
  std::atomic<bool> ends_ = false;
  std::thread dripping_;
};

#endif  // TESTS_E2E_SILENT_SERVER_H
