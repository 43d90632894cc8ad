// How an exchange goes on after one of its steps.
#ifndef KIO_SETTINGS_STEP_H
#define KIO_SETTINGS_STEP_H

namespace kio::settings {

enum class Step {
  kRefused,  // reported; the exchange ends
  kGoOn,
  kStageDone,  // good; the rest of this stage of the exchange is left out
};

constexpr Step GoOnIf(bool good) { return good ? Step::kGoOn : Step::kRefused; }

}  // namespace kio::settings

#endif
