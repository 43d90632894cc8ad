// The kinds of scenarios. Each drives one part of the library's interface with inputs drawn from
// `random`, on the device that is in the store.
#ifndef KIO_DIFFERENTIAL_SCENARIO_H
#define KIO_DIFFERENTIAL_SCENARIO_H

#include <span>
#include <string>
#include <string_view>

#include "random.h"

namespace kio::differential {

struct Kind {
  std::string_view name;
  int weight;  // how often it is chosen, compared with the others
  void (*run)(Random& random);
};

// The kinds of each part.
extern const std::span<const Kind> kExchangeKinds;
extern const std::span<const Kind> kRecordKinds;
extern const std::span<const Kind> kVariableKinds;
extern const std::span<const Kind> kFirmwareKinds;
extern const std::span<const Kind> kUpgradeKinds;
extern const std::span<const Kind> kLoginKinds;
extern const std::span<const Kind> kToolkitKinds;
extern const std::span<const Kind> kTextKinds;
extern const std::span<const Kind> kPlatformKinds;

// A firmware list for the device in the store.
std::string MakeFirmwareList(Random& random);

// Commits by any of the exported functions that do.
void Commit(Random& random);

}  // namespace kio::differential

#endif
