// The commands of the library, as the tests of this folder run them: what they write is written,
// and no shell is started.
#ifndef TESTS_DRY_RUN_COMMANDS_H
#define TESTS_DRY_RUN_COMMANDS_H

#include <string>
#include <vector>

// The commands so far, the oldest first.
const std::vector<std::string>& CommandsSoFar();

#endif  // TESTS_DRY_RUN_COMMANDS_H
