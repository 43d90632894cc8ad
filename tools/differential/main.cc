// kio_differential: runs scenarios over the library that the loader has loaded and prints what it
// did in each of them.
#include <link.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "run.h"

namespace {

constexpr char kUsage[] =
    "usage: kio_differential [--seed=N] [--scenarios=N] [--show=N,N,...] [--output=FILE]\n"
    "       kio_differential --which\n"
    "\n"
    "Runs scenarios over libkioapp.so.1 as the loader finds it (LD_LIBRARY_PATH), and writes a "
    "line\n"
    "for each: its number, a digest of all that the library did, and its kind. Two libraries of "
    "one\n"
    "behaviour give the same lines for one seed.\n"
    "\n"
    "  --seed=N       chooses the scenarios (1)\n"
    "  --scenarios=N  how many (1000)\n"
    "  --show=N,...   only these, with everything that the library did\n"
    "  --output=FILE  where to write to (standard output)\n"
    "  --which        only prints which library was loaded\n";

int Refuse(const std::string& why) {
  std::fprintf(stderr, "kio_differential: %s\n%s", why.c_str(), kUsage);
  return 2;
}

// Whether the whole text is a number; then it is put into `number`.
bool ReadNumber(const std::string& text, long long low, long long high, long long& number) {
  char* end = nullptr;
  errno = 0;
  number = std::strtoll(text.c_str(), &end, 10);
  return !text.empty() && *end == '\0' && errno == 0 && number >= low && number <= high;
}

bool ReadNumbers(std::string_view text, std::set<int>& numbers) {
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    long long number = 0;
    if (!ReadNumber(std::string(text.substr(0, comma)), 0, 1 << 30, number)) {
      return false;
    }
    numbers.insert(static_cast<int>(number));
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  return !numbers.empty();
}

int PrintLibrary() {
  const auto print = [](dl_phdr_info* info, std::size_t /*size*/, void* /*data*/) {
    if (std::string_view(info->dlpi_name).find("libkioapp.so") != std::string_view::npos) {
      std::printf("%s\n", info->dlpi_name);
      return 1;
    }
    return 0;
  };
  return dl_iterate_phdr(print, nullptr) == 1 ? 0 : 1;
}

// Takes an option of the form NAME=VALUE.
bool Take(std::string_view argument, std::string_view name, std::string& value) {
  if (!argument.starts_with(name)) {
    return false;
  }
  value = argument.substr(name.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  kio::differential::Plan plan;
  std::string path;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    std::string value;
    long long number = 0;
    if (argument == "--which") {
      return PrintLibrary();
    }
    if (argument == "--help") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (Take(argument, "--seed=", value) && ReadNumber(value, 0, 1LL << 60, number)) {
      plan.seed = static_cast<std::uint64_t>(number);
    } else if (Take(argument, "--scenarios=", value) && ReadNumber(value, 1, 1 << 30, number)) {
      plan.scenarios = static_cast<int>(number);
    } else if (Take(argument, "--show=", value) && ReadNumbers(value, plan.shown)) {
      plan.scenarios = std::max(plan.scenarios, *plan.shown.rbegin() + 1);
    } else if (!Take(argument, "--output=", path)) {
      return Refuse("bad argument '" + std::string(argument) + "'");
    }
  }
  FILE* const output = path.empty() ? stdout : std::fopen(path.c_str(), "w");
  if (output == nullptr) {
    return Refuse("cannot write " + path + ": " + std::strerror(errno));
  }
  const int ended = kio::differential::Run(plan, output);
  if (ended > 0) {
    std::fprintf(stderr, "kio_differential: %d scenarios ended the process\n", ended);
  }
  return std::fflush(output) == 0 ? 0 : 2;
}
