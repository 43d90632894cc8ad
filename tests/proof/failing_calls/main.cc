// Every call of the library that can fail, failed once in every way, in every scenario.
//
//   failing_calls             tries all of it; prints the figures
//   failing_calls --outcomes  and a line for each scenario with a digest of all outcomes
//   failing_calls --calls     prints the names of the calls
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "explorer.h"
#include "scenarios.h"
#include "ways.h"

namespace kio::proof {
namespace {

// Messages that no scenario logs when all goes well: of a timer and of a client that there is no
// memory for.
constexpr const char* kMessagesOfFailures[] = {"create_timer fail !!!\n", "No IP to be deleted.\n"};

// Memory that processes share, all zero.
void* Shared(std::size_t size) {
  void* const memory =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    std::perror("mmap");
    _exit(1);
  }
  return memory;
}

// Texts on their way from a process to its parent: each with its length before it.
void Send(FILE* file, const std::string& text) {
  std::fprintf(file, "%zu ", text.size());
  for (const char character : text) {
    std::putc(character, file);
  }
}

std::string Receive(FILE* file) {
  std::string digits;
  int character = std::getc(file);
  for (; character >= '0' && character <= '9'; character = std::getc(file)) {
    digits += static_cast<char>(character);
  }
  if (digits.empty() || character != ' ') {
    std::printf("an outcome is cut short\n");
    _exit(1);
  }
  std::size_t size = std::stoul(digits);
  std::string text;
  while (size-- > 0) {
    text += static_cast<char>(std::getc(file));
  }
  return text;
}

template <typename Texts>
void SendAll(FILE* file, const Texts& texts) {
  Send(file, std::to_string(texts.size()));
  for (const auto& text : texts) {
    if constexpr (std::is_same_v<std::decay_t<decltype(text)>, std::string>) {
      Send(file, text);
    } else {
      Send(file, text.first);
      Send(file, text.second);
    }
  }
}

std::size_t ReceiveNumber(FILE* file) {
  return static_cast<std::size_t>(std::stoul(Receive(file)));
}

std::map<std::string, std::string> ReceiveMap(FILE* file) {
  std::map<std::string, std::string> map;
  for (std::size_t i = ReceiveNumber(file); i > 0; --i) {
    std::string name = Receive(file);
    map[std::move(name)] = Receive(file);
  }
  return map;
}

// What a scenario leads to when all goes well, found by a process of its own: the library begins
// anew in each.
Outcome PlainOutcome(const Scenario& scenario) {
  FILE* const file = std::tmpfile();
  if (file == nullptr) {
    std::perror("a temporary file");
    _exit(1);
  }
  const pid_t child = fork();
  if (child == 0) {
    const Outcome outcome = RunPlain(scenario);
    SendAll(file, outcome.trace);
    SendAll(file, outcome.formats);
    SendAll(file, outcome.store);
    SendAll(file, outcome.files);
    Send(file, outcome.record);
    std::fflush(file);
    _exit(0);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) {
    std::printf("%s: without a failure the process ended with %d\n", scenario.name, status);
    _exit(1);
  }
  std::rewind(file);
  Outcome outcome;
  for (std::size_t i = ReceiveNumber(file); i > 0; --i) {
    outcome.trace.push_back(Receive(file));
  }
  for (std::size_t i = ReceiveNumber(file); i > 0; --i) {
    outcome.formats.insert(Receive(file));
  }
  outcome.store = ReceiveMap(file);
  outcome.files = ReceiveMap(file);
  outcome.record = Receive(file);
  std::fclose(file);
  return outcome;
}

// Whether a scenario, with no failure, is what its name says.
bool AnswersAsItShould(const Scenario& scenario, const Outcome& outcome) {
  constexpr std::string_view kAnswer = "answer ";
  std::string answers;
  for (const std::string& event : outcome.trace) {
    if (event.starts_with(kAnswer)) {
      answers += event.substr(kAnswer.size()) + "; ";
    }
  }
  if (answers != scenario.answers) {
    std::printf("%s: without a failure it answers\n%s\n  instead of\n%s\n", scenario.name,
                answers.c_str(), scenario.answers);
  }
  return answers == scenario.answers;
}

// Tries all scenarios, in as many processes at a time as there are processors.
void TryAll(const std::vector<Outcome>& plain, const std::set<std::string>& messages,
            std::span<Tally> tallies) {
  const long most = sysconf(_SC_NPROCESSORS_ONLN);
  long running = 0;
  const auto wait_for_one = [&running, tallies] {
    int status = 0;
    wait(&status);
    --running;
    if (status != 0) {
      std::printf("a scenario ended with %d\n", status);
      ++tallies[0].wrong;
    }
  };
  for (std::size_t i = 0; i < plain.size(); ++i) {
    if (running == most) {
      wait_for_one();
    }
    std::fflush(nullptr);
    if (fork() == 0) {
      Explore(Scenarios()[i], plain[i], messages, &tallies[i]);
      std::fflush(nullptr);
      _exit(0);
    }
    ++running;
  }
  while (running > 0) {
    wait_for_one();
  }
}

void Figure(const std::string& what, int value) {
  std::printf("figure: %s\t%d\n", what.c_str(), value);
}

// Prints the figures; returns whether all is well.
bool Report(std::span<const Tally> tallies) {
  bool is_well = true;
  int all_failed = 0;
  int unnoticed = 0;
  int wrong = 0;
  for (const Tally& tally : tallies) {
    unnoticed += tally.unnoticed;
    wrong += tally.wrong;
  }
  Figure("library: scenarios", static_cast<int>(tallies.size()));
  for (std::size_t call = 0; call < kCallNames.size(); ++call) {
    int failed = 0;
    for (const Tally& tally : tallies) {
      failed += tally.failed[call];
    }
    Figure(std::string("library: failures of ") + kCallNames[call], failed);
    all_failed += failed;
    if (failed == 0) {
      std::printf("%s is called in no scenario\n", kCallNames[call]);
      is_well = false;
    }
  }
  Figure("library: failures in all", all_failed);
  Figure("library: failures that changed nothing that is done afterwards", unnoticed);
  Figure("library: failures with another effect than they may have", wrong);
  return is_well && wrong == 0;
}

int Main(std::span<char*> arguments) {
  const std::string option = arguments.size() > 1 ? arguments[1] : "";
  if (option == "--traces") {
    for (const Scenario& scenario : Scenarios()) {
      for (const std::string& event : PlainOutcome(scenario).trace) {
        std::printf("%s: %s\n", scenario.name, event.c_str());
      }
    }
    return 0;
  }
  if (option == "--calls") {
    for (const char* const name : kCallNames) {
      std::printf("%s\n", name);
    }
    return 0;
  }
  bool is_well = true;
  std::vector<Outcome> plain;
  std::set<std::string> messages(std::begin(kMessagesOfFailures), std::end(kMessagesOfFailures));
  for (const Scenario& scenario : Scenarios()) {
    plain.push_back(PlainOutcome(scenario));
    is_well = AnswersAsItShould(scenario, plain.back()) && is_well;
    messages.insert(plain.back().formats.begin(), plain.back().formats.end());
  }
  const std::span<Tally> tallies(static_cast<Tally*>(Shared(Scenarios().size() * sizeof(Tally))),
                                 Scenarios().size());
  TryAll(plain, messages, tallies);
  if (option == "--outcomes") {
    for (std::size_t i = 0; i < tallies.size(); ++i) {
      const Tally& tally = tallies[i];
      int failed = 0;
      for (const int count : tally.failed) {
        failed += count;
      }
      std::printf("outcome: %s\t%d\t%016llx\n", Scenarios()[i].name, failed,
                  static_cast<unsigned long long>(tally.digest));
    }
  }
  return Report(tallies) && is_well ? 0 : 1;
}

}  // namespace
}  // namespace kio::proof

int main(int argc, char** argv) { return kio::proof::Main({argv, static_cast<std::size_t>(argc)}); }
