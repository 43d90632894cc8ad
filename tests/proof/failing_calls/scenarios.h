// What the library is asked for while its calls fail.
#ifndef KIO_TESTS_PROOF_FAILING_CALLS_SCENARIOS_H
#define KIO_TESTS_PROOF_FAILING_CALLS_SCENARIOS_H

#include <span>

namespace kio::proof {

inline constexpr const char* kLogFile = "/log/kio_log.txt";

struct Scenario {
  const char* name;
  int log_level;
  void (*prepare)();
  void (*run)();
  // What it answers when all goes well, each answer with "; " behind it.
  const char* answers;
  // Gives back what the library leaves to its host.
  void (*finish)() = nullptr;
  bool log_rotates = false;
};

std::span<const Scenario> Scenarios();

}  // namespace kio::proof

#endif
