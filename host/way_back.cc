#include "way_back.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <string>
#include <string_view>

#include "node_changes.h"
#include "uptime.h"

namespace kiohost {
namespace {

constexpr std::string_view kSeconds = "confirm seconds";
constexpr std::string_view kUntil = "confirm until";
constexpr std::string_view kActions = "confirm actions";
constexpr std::string_view kBoot = "confirm boot";

// A number for this boot of the machine: the uptime counts from it.
int64_t BootOfTheMachine() {
  constexpr int kHexadecimal = 16;
  constexpr size_t kDigits = 8;  // before the first '-'
  std::ifstream file("/proc/sys/kernel/random/boot_id");
  std::string text;
  std::getline(file, text);
  text.resize(std::min(text.size(), kDigits));
  int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number, kHexadecimal);
  return number;
}

}  // namespace

void WayBack::Keep(const std::vector<Node>& before, int64_t seconds, unsigned int actions) {
  for (const NodeChange& change : ChangesOf(before, store_->List())) {
    store_->KeepOldText(change.path, change.before);
  }
  store_->SetNumber(kSeconds, seconds);
  store_->SetNumber(kUntil, SteadySeconds() + seconds);
  store_->SetNumber(kActions, actions);
  store_->SetNumber(kBoot, BootOfTheMachine());
}

std::optional<WayBack::Pending> WayBack::pending() {
  const std::optional<int64_t> until = store_->Number(kUntil);
  if (!until) {
    return std::nullopt;
  }
  // After another boot nobody knows how much time has passed.
  const bool same_boot = store_->Number(kBoot) == BootOfTheMachine();
  const int64_t left = same_boot ? *until - SteadySeconds() : 0;
  return Pending{store_->Number(kSeconds).value_or(0), std::max<int64_t>(left, 0),
                 static_cast<unsigned int>(store_->Number(kActions).value_or(0))};
}

void WayBack::Take() {
  store_->AddDueActions(static_cast<unsigned int>(store_->Number(kActions).value_or(0)));
  store_->PutBackOldTexts();
  Forget();
}

void WayBack::Extend(int64_t seconds) {
  if (const std::optional<int64_t> until = store_->Number(kUntil)) {
    store_->SetNumber(kUntil, *until + seconds);
  }
}

void WayBack::Forget() {
  store_->ForgetOldTexts();
  for (const std::string_view name : {kSeconds, kUntil, kActions, kBoot}) {
    store_->RemoveNumber(name);
  }
}

}  // namespace kiohost
