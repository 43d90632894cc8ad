// What a fault rule can do, and which members it has.
#ifndef HOST_CONTROL_FAULT_ACTIONS_H
#define HOST_CONTROL_FAULT_ACTIONS_H

#include <array>
#include <string>
#include <string_view>

#include "json.h"

namespace kiohost {

enum class FaultKind {
  kDelay,
  kDrip,
  kCut,
  kReset,
  kRefuse,
  kAnswer,
  kStoreFails,
  kStoreSlow,
  kStoreFull,
  kStoreLocked,
  kCommandFails,
  kCommandHangs,
  kCommandMissing,
  kResultUnwritable,
  kFirmwareMissing,
  kFirmwareStops,
  kFirmwareChanged,
  kFirmwareList,
  kRadioMoves,
  kRadioGone,
  kPowerOff,
};

struct FaultAction {
  // How often a rule can act: as often as its members say, once, or all the time without a count.
  enum class Times { kMany, kOnce, kAlways };

  FaultKind kind;
  std::string_view name;
  std::array<std::string_view, 3> match = {};  // what its match may name
  std::array<std::string_view, 2> needs = {};  // members of its own that it must have
  std::string_view takes = {};                 // one that it may have
  Times times = Times::kMany;
};

// The action of a rule, or null and what is wrong with the rule.
const FaultAction* CheckFaultRule(const Json& rule, std::string* fault);

}  // namespace kiohost

#endif  // HOST_CONTROL_FAULT_ACTIONS_H
