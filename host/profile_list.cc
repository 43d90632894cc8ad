#include "profile_list.h"

#include <algorithm>
#include <fstream>
#include <vector>

#include "text.h"

namespace kiohost {
namespace {

constexpr char kDefaultProfile[] = "dual-band-router";
constexpr char kEnding[] = ".profile";

// In the order of their names.
std::vector<std::string> ProfileNames(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    if (entry.path().extension() == kEnding) {
      names.push_back(entry.path().stem());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string Description(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line.starts_with('#') ? std::string(Trim(line.substr(1))) : "";
}

}  // namespace

std::string ProfileList(const std::filesystem::path& directory) {
  std::string list;
  const std::vector<std::string> names = ProfileNames(directory);
  size_t width = 0;
  for (const std::string& name : names) {
    width = std::max(width, name.size());
  }
  for (const std::string& name : names) {
    list += name + std::string(width - name.size() + 2, ' ') +
            Description(directory / (name + kEnding)) +
            (name == kDefaultProfile ? " (default)\n" : "\n");
  }
  return list;
}

Status FindProfile(const std::string& name, const std::filesystem::path& directory,
                   std::string* file) {
  *file = directory / ((name.empty() ? kDefaultProfile : name) + kEnding);
  const std::vector<std::string> names = ProfileNames(directory);
  if (name.empty() || std::find(names.begin(), names.end(), name) != names.end()) {
    return {};
  }
  std::error_code error;
  if (std::filesystem::exists(name, error) || name.find('/') != std::string::npos) {
    *file = name;
    return {};
  }
  return {ExitCode::kProfile, "cannot read the profile " + name +
                                  ": there is neither such a file nor a delivered profile of that "
                                  "name (--profiles lists them)"};
}

}  // namespace kiohost
