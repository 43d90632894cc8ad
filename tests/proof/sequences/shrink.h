// Makes a sequence that fails as short as it gets.
#ifndef TESTS_PROOF_SEQUENCES_SHRINK_H
#define TESTS_PROOF_SEQUENCES_SHRINK_H

#include <functional>

#include "step.h"

namespace kio::sequences {

// Leaves out stretches of steps, then single words of steps, as long as it still fails. `tries` is
// how often `fails` may be asked.
Sequence Shrink(Sequence sequence, const std::function<bool(const Sequence&)>& fails, int tries);

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_SHRINK_H
