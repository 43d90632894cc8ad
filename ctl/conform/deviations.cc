#include "conform/deviations.h"

#include <algorithm>
#include <sstream>

#include "conform/case.h"

namespace kioctl::conform {
namespace {

std::string Trimmed(const std::string& text) {
  const size_t begin = text.find_first_not_of(" \t\r");
  return begin == std::string::npos
             ? ""
             : text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

}  // namespace

std::string ReadDeviations(const std::string& text, Deviations* deviations) {
  const std::vector<const Case*> all = AllCases();
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    line = Trimmed(line);
    if (line.empty() || line.front() == '#') {
      continue;
    }
    const std::string at = std::to_string(number) + ": ";
    const size_t colon = line.find(':');
    const std::string name = Trimmed(line.substr(0, colon));
    const std::string reason = colon == std::string::npos ? "" : Trimmed(line.substr(colon + 1));
    if (std::none_of(all.begin(), all.end(),
                     [&name](const Case* one) { return one->name == name; })) {
      return std::string(at).append("there is no case ").append(name);
    }
    if (reason.empty()) {
      return at + name + " has no reason";
    }
    if (!deviations->emplace(name, reason).second) {
      return at + name + " stands there twice";
    }
  }
  return "";
}

}  // namespace kioctl::conform
