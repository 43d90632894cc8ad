// Runs a target without a fuzzing engine.
//
//     TARGET [--mutations=N] FILE_OR_DIRECTORY...
//
// Runs each file as it is, then N mutations of them. These are drawn from a fixed seed and so are
// the same in every run.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "input.h"
#include "mutator.h"

namespace {

constexpr char kMutationsOption[] = "--mutations=";

using kio::fuzz::Draw;
using kio::fuzz::Random;

const std::string* g_input = nullptr;

// Writes the input that ended the program to finding.input in the working directory, so that it can
// be run by itself.
extern "C" void KeepInput(int signal_number) {
  const int file = open("finding.input", O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (file >= 0 && g_input != nullptr) {
    static_cast<void>(!write(file, g_input->data(), g_input->size()));
  }
  signal(signal_number, SIG_DFL);
  raise(signal_number);
}

void RunInput(const std::string& input) {
  g_input = &input;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

// One change of bytes: one set or inserted, a stretch removed, repeated or taken from another
// input, or the end cut off.
void MutateBytes(std::string& input, const std::string& other, Random& random) {
  const std::size_t position = Draw(random, input.size() + 1);
  const std::size_t length = Draw(random, 1U << Draw(random, 7));
  switch (Draw(random, 6)) {
    case 0:
      if (position < input.size()) {
        input[position] = static_cast<char>(random());
      }
      break;
    case 1: {
      constexpr char kMarkup[] = "<>/&;,: -0129aZ\\\n";
      input.insert(position, 1, kMarkup[Draw(random, sizeof(kMarkup) - 1)]);
      break;
    }
    case 2:
      input.erase(position, length);
      break;
    case 3:
      input.insert(Draw(random, input.size() + 1), input.substr(position, length));
      break;
    case 4:
      input.insert(position, other.substr(Draw(random, other.size() + 1), length));
      break;
    default:
      input.resize(position);
      break;
  }
}

void RunMutations(const std::vector<std::string>& inputs, int count) {
  constexpr std::size_t kMostChanges = 6;
  constexpr std::size_t kLongest = 65536;
  Random random(20240229);
  std::string input;
  for (int i = 0; i < count; ++i) {
    input = inputs[Draw(random, inputs.size())];
    for (std::size_t changes = Draw(random, kMostChanges) + 1; changes > 0; --changes) {
      const std::string& other = inputs[Draw(random, inputs.size())];
      if (Draw(random, 2) == 0) {
        MutateBytes(input, other, random);
      } else {
        kio::fuzz::MutateStructure(input, other, random);
      }
    }
    input.resize(std::min(input.size(), kLongest));
    RunInput(input);
  }
}

bool ReadFile(const std::filesystem::path& path, std::vector<std::string>& inputs) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    return false;
  }
  inputs.push_back(text.str());
  return true;
}

bool ReadInputs(const std::filesystem::path& path, std::vector<std::string>& inputs) {
  if (!std::filesystem::is_directory(path)) {
    return ReadFile(path, inputs);
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return std::all_of(files.begin(), files.end(),
                     [&inputs](const auto& file) { return ReadFile(file, inputs); });
}

}  // namespace

int main(int argc, char** argv) {
  signal(SIGABRT, KeepInput);
  signal(SIGSEGV, KeepInput);
  int mutations = 0;
  std::vector<std::string> inputs;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.starts_with(kMutationsOption)) {
      mutations = std::stoi(argument.substr(sizeof(kMutationsOption) - 1));
    } else if (!ReadInputs(argument, inputs)) {
      return 1;
    }
  }
  if (inputs.empty()) {
    std::fprintf(stderr, "usage: %s [--mutations=N] FILE_OR_DIRECTORY...\n", argv[0]);
    return 1;
  }
  for (const std::string& input : inputs) {
    RunInput(input);
  }
  RunMutations(inputs, mutations);
  std::printf("%zu inputs and %d mutations of them: no finding\n", inputs.size(), mutations);
  return 0;
}
