// Random sequences.
#ifndef TESTS_PROOF_SEQUENCES_DRAW_H
#define TESTS_PROOF_SEQUENCES_DRAW_H

#include <cstdint>

#include "step.h"

namespace kio::sequences {

// The same for a seed each time.
Sequence Draw(std::uint64_t seed, int length);

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_DRAW_H
