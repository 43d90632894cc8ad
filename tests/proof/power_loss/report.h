// What a run says: figures, and what is wrong.
#ifndef TESTS_PROOF_POWER_LOSS_REPORT_H
#define TESTS_PROOF_POWER_LOSS_REPORT_H

#include <cstdio>
#include <string>

inline int g_wrong = 0;

inline void Say(const std::string& what) {
  std::printf("%s\n", what.c_str());
  ++g_wrong;
}

inline void Figure(const std::string& what, long value) {
  std::printf("figure: %s\t%ld\n", what.c_str(), value);
}

#endif  // TESTS_PROOF_POWER_LOSS_REPORT_H
