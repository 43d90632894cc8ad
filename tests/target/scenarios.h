/* The calls that are measured. */
#ifndef KIO_TESTS_TARGET_SCENARIOS_H
#define KIO_TESTS_TARGET_SCENARIOS_H

#include <stddef.h>

struct Scenario {
  const char *name;
  void (*prepare)(void);
  void (*run)(void);
  void (*check)(void); /* ends the program when the call did not do what it should */
};

extern const struct Scenario kScenarios[];
extern const size_t kScenarioCount;

/* The exchange is that of the full document, or of one with fewer rules for each radio. */
enum { kDocumentRules = 40 };
void SetDocumentRules(int rules);
size_t DocumentSize(void);

__attribute__((noreturn)) void Stop(const char *what);

#endif
