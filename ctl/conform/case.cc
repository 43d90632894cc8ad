#include "conform/case.h"

#include <fnmatch.h>

#include <algorithm>
#include <random>

namespace kioctl::conform {
namespace {

bool Fits(const std::string& pattern, const std::string& name) {
  return fnmatch(pattern.c_str(), name.c_str(), 0) == 0 ||
         fnmatch(pattern.c_str(), name.substr(0, name.find('.')).c_str(), 0) == 0;
}

}  // namespace

std::vector<const Case*> AllCases() {
  std::vector<const Case*> all;
  for (const auto& group :
       {kDeviceCases, kInterfaceCases, kErrorCases, kLoginCases, kDocumentCases, kCodeCases,
        kWaitCases, kConfirmCases, kBackupCases, kVariableCases, kBatchCases, kFirmwareCases,
        kEventCases, kLimitCases, kRobustnessCases}) {
    for (const Case& one : group) {
      all.push_back(&one);
    }
  }
  return all;
}

std::string SelectCases(const std::vector<std::string>& patterns, std::vector<const Case*>* cases) {
  const std::vector<const Case*> all = AllCases();
  cases->clear();
  for (const std::string& pattern : patterns) {
    if (std::none_of(all.begin(), all.end(),
                     [&pattern](const Case* one) { return Fits(pattern, one->name); })) {
      return pattern;
    }
  }
  std::copy_if(all.begin(), all.end(), std::back_inserter(*cases), [&patterns](const Case* one) {
    return patterns.empty() ||
           std::any_of(patterns.begin(), patterns.end(),
                       [one](const std::string& pattern) { return Fits(pattern, one->name); });
  });
  return "";
}

void Shuffle(unsigned long seed, std::vector<const Case*>* cases) {
  // std::shuffle gives another order with another standard library.
  std::mt19937_64 random(seed);
  for (size_t left = cases->size(); left > 1; --left) {
    std::swap((*cases)[left - 1], (*cases)[random() % left]);
  }
}

}  // namespace kioctl::conform
