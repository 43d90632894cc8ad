// A case: one promise of the interface, and how it is tried out.
#ifndef CTL_CONFORM_CASE_H
#define CTL_CONFORM_CASE_H

#include <span>
#include <string>
#include <vector>

#include "conform/conversation.h"

namespace kioctl::conform {

struct Case {
  const char* name;     // group.case
  const char* promise;  // in one sentence
  void (*run)(Conversation* talk);
  const char* needs = nullptr;  // a request that the router must offer, such as "POST /settings"
  bool changes = false;         // sends what may change settings
  bool disruptive = false;      // may cut the tester off
  bool logs_in = false;         // is about the login: needs a router that asks for one
  long seconds = 0;             // that must pass: by the control port, or with --slow
  bool slow = false;            // takes real time, whatever clock there is: with --slow alone
};

// The tables of the groups.
extern const std::span<const Case> kDeviceCases;
extern const std::span<const Case> kInterfaceCases;
extern const std::span<const Case> kErrorCases;
extern const std::span<const Case> kLoginCases;
extern const std::span<const Case> kDocumentCases;
extern const std::span<const Case> kCodeCases;
extern const std::span<const Case> kWaitCases;
extern const std::span<const Case> kConfirmCases;
extern const std::span<const Case> kBackupCases;
extern const std::span<const Case> kVariableCases;
extern const std::span<const Case> kBatchCases;
extern const std::span<const Case> kFirmwareCases;
extern const std::span<const Case> kEventCases;
extern const std::span<const Case> kLimitCases;
extern const std::span<const Case> kRobustnessCases;

// All of them, in the order of their groups.
std::vector<const Case*> AllCases();

// Those whose name or group fits one of the patterns, in which * and ? stand for any characters.
// All of them without a pattern. Gives the pattern that fits nothing, or an empty text.
std::string SelectCases(const std::vector<std::string>& patterns, std::vector<const Case*>* cases);

// Puts them into an order that the seed alone decides.
void Shuffle(unsigned long seed, std::vector<const Case*>* cases);

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_CASE_H
