// What a step of an exchange leads to.
#ifndef KIO_SETTINGS_STEP_H
#define KIO_SETTINGS_STEP_H

namespace kio::settings {

enum class Step {
  kRefused,  // reported; the exchange ends
  kGoOn,
  kStageDone,  // good, and what follows in this stage of the exchange is left out
};

constexpr Step GoOnIf(bool good) { return good ? Step::kGoOn : Step::kRefused; }

}  // namespace kio::settings

#endif
