// Hosts whose alarms ring when the test says so.
#ifndef TESTS_E2E_HELD_ALARM_H
#define TESTS_E2E_HELD_ALARM_H

#include <csignal>
#include <string>
#include <vector>

#include "host_process.h"
#include "preload.h"

inline std::string AlarmFile(const HostProcess& host) { return host.dir().File("alarms"); }

inline bool StartWithHeldAlarm(HostProcess* host, const std::vector<std::string>& arguments = {}) {
  const Preload held_alarm(KIO_HELD_ALARM, "KIO_TEST_ALARMS", AlarmFile(*host));
  return host->Start(arguments);
}

// The seconds for which the host has set its alarm, a line each; "0" cancels it.
inline std::string Alarms(const HostProcess& host) { return ReadFile(AlarmFile(host)); }

// Returns false when the host cannot be reached.
inline bool RingAlarm(const HostProcess& host) { return kill(host.pid(), SIGUSR1) == 0; }

#endif  // TESTS_E2E_HELD_ALARM_H
