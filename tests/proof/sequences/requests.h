// The fault rule of a step.
#ifndef TESTS_PROOF_SEQUENCES_REQUESTS_H
#define TESTS_PROOF_SEQUENCES_REQUESTS_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "step.h"

namespace kio::sequences {

std::optional<nlohmann::json> RuleOf(const Step& step);

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_REQUESTS_H
