// Preloads a library into the hosts that are started in its scope.
#ifndef TESTS_E2E_PRELOAD_H
#define TESTS_E2E_PRELOAD_H

#include <cstdlib>
#include <string>

class Preload {
 public:
  // The library reads the environment variable `variable`.
  Preload(const char* library, const char* variable, const std::string& value) {
    setenv("LD_PRELOAD", library, 1);
    setenv(variable, value.c_str(), 1);
    // A sanitizer wants to be loaded first.
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
  }
  ~Preload() { unsetenv("LD_PRELOAD"); }
  Preload(const Preload&) = delete;
  Preload& operator=(const Preload&) = delete;
};

#endif  // TESTS_E2E_PRELOAD_H
