#include "explorer.h"

#include <strings.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "kioapp/kioapp.h"
#include "machine.h"
#include "testing/memory_store.h"

namespace kio::proof {
namespace {

constexpr std::size_t kShown = 200;  // characters of an event that a message shows

// A scenario in which calls fail.
struct Run {
  const Scenario* scenario = nullptr;
  const Outcome* plain = nullptr;
  const std::set<std::string>* messages = nullptr;
  Tally* tally = nullptr;
  // In the copy in which a call has failed:
  const Way* failed = nullptr;
  std::string about;
  int number = 0;         // of the call, among those of its name
  std::size_t event = 0;  // so many events came before it
};

bool g_is_library = false;  // calls are the library's
Run g_run;

std::uint64_t Digest(std::uint64_t digest, std::string_view text) {
  for (const char character : text) {
    digest = (digest ^ static_cast<unsigned char>(character)) * 1099511628211U;
  }
  return (digest ^ 0xFF) * 1099511628211U;
}

// Answers tell what a call returned, and may say why it failed.
bool IsAnswer(const std::string& event) { return event.starts_with("answer "); }

std::uint64_t DigestOf(const Outcome& outcome, bool with_answers) {
  std::uint64_t digest = 14695981039346656037U;
  for (const std::string& event : outcome.trace) {
    if (with_answers || !IsAnswer(event)) {
      digest = Digest(digest, event);
    }
  }
  for (const auto* texts : {&outcome.store, &outcome.files}) {
    for (const auto& [name, text] : *texts) {
      digest = Digest(Digest(digest, name), text);
    }
  }
  return digest;
}

Outcome TakeOutcome() {
  const Machine& machine = Machine::Get();
  return {machine.trace, machine.formats, Machine::Store(), machine.files,
          std::string(reinterpret_cast<const char*>(&rssXmlData), sizeof(rssXmlData))};
}

void Perform(const Scenario& scenario) {
  g_store_behaviour.absent_leaves_buffer = 1;
  g_store_behaviour.absent_result = -1;
  std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", "/log");
  std::snprintf(daemon_log_header, sizeof(daemon_log_header), "%s", "kio");
  daemon_log_file_size_k = 100000;
  daemon_log_level = scenario.log_level;
  Machine::Get().is_on = true;
  scenario.prepare();
  g_is_library = true;
  scenario.run();
  g_is_library = false;
  const Machine& machine = Machine::Get();
  if (scenario.finish != nullptr) {
    scenario.finish();
  }
  Machine::Get().is_on = false;
  if (!machine.open_files.empty() || !machine.sockets.empty()) {
    Machine::Get().faults.emplace_back("a descriptor is left open");
  }
  if (!machine.blocks.empty()) {
    Machine::Get().faults.emplace_back("memory is left");
  }
  if (!machine.mappings.empty()) {
    Machine::Get().faults.emplace_back("a mapping is left");
  }
}

std::string Shown(const std::vector<std::string>& trace, std::size_t at) {
  return at < trace.size() ? trace[at].substr(0, kShown) : "(the end)";
}

// Says what is wrong with a run in which a call failed.
class Verdict {
 public:
  explicit Verdict(Outcome outcome) : outcome_(std::move(outcome)) {}

  bool is_right() const { return is_right_; }

  void Judge() {
    for (const std::string& fault : Machine::Get().faults) {
      Say(fault);
    }
    for (const std::string& format : outcome_.formats) {
      if (!g_run.messages->contains(format)) {
        Say("a message that is logged in no such case: " + format);
      }
    }
    switch (ExpectedEffect()) {
      case Effect::kNone:
        ExpectSame(0);
        ExpectEqual(outcome_.store == g_run.plain->store, "the store");
        ExpectEqual(outcome_.files == g_run.plain->files, "the files");
        ExpectEqual(outcome_.record == g_run.plain->record, "the record");
        break;
      case Effect::kCall:
        ExpectSame(1);
        ExpectEqual(outcome_.record == g_run.plain->record, "the record");
        ExpectStore();
        break;
      case Effect::kOnward:
        ExpectPast();
        break;
    }
  }

 private:
  void Say(const std::string& what) {
    std::printf("%s: call %d of %s (%s) fails: %s: %s\n", g_run.scenario->name, g_run.number,
                NameOf(g_run.failed->call), g_run.about.c_str(), g_run.failed->name, what.c_str());
    is_right_ = false;
  }

  static Effect ExpectedEffect() {
    const Way& way = *g_run.failed;
    const bool is_log = g_run.about == kLogFile;
    if (is_log && way.effect != Effect::kNone && g_run.scenario->log_rotates) {
      // A line that is missing leaves room for others.
      return Effect::kOnward;
    }
    if (is_log && way.call == Call::kOpen && way.effect == Effect::kOnward) {
      // The line is missing.
      return Effect::kCall;
    }
    return way.call >= Call::kXdel && way.effect == Effect::kCall && IsReadLater() ? Effect::kOnward
                                                                                   : way.effect;
  }

  // Whether the library reads the node of the call later on.
  static bool IsReadLater() {
    const auto& plain = g_run.plain->trace;
    for (std::size_t i = g_run.event; i < plain.size(); ++i) {
      if (plain[i].starts_with("xget_") && plain[i].ends_with(" " + g_run.about)) {
        return true;
      }
    }
    return false;
  }

  void ExpectEqual(bool is_equal, const char* what) {
    if (!is_equal) {
      Say(std::string(what) + " is another");
    }
  }

  // What came before the call is not changed by it.
  void ExpectPast() {
    const auto& plain = g_run.plain->trace;
    const std::size_t past = std::min(g_run.event, plain.size());
    if (outcome_.trace.size() < past ||
        !std::equal(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(past),
                    outcome_.trace.begin())) {
      Say("what was done before is another");
    }
  }

  // All events are the same, but for so many in one place, which are missing or others.
  void ExpectSame(std::size_t most) {
    const auto& plain = g_run.plain->trace;
    const auto& now = outcome_.trace;
    const std::size_t shorter = std::min(plain.size(), now.size());
    std::size_t begin = 0;
    while (begin < shorter && plain[begin] == now[begin]) {
      ++begin;
    }
    std::size_t end = 0;
    while (end < shorter - begin && plain[plain.size() - 1 - end] == now[now.size() - 1 - end]) {
      ++end;
    }
    if (now.size() > plain.size() || plain.size() - begin - end > most) {
      Say("event " + std::to_string(begin) + " is\n    " + Shown(now, begin) +
          "\n  instead of\n    " + Shown(plain, begin));
    }
  }

  // All nodes are the same, but that of a call of the store which failed.
  void ExpectStore() {
    std::map<std::string, std::string> mine = outcome_.store;
    std::map<std::string, std::string> plain = g_run.plain->store;
    const bool is_store = g_run.failed->call >= Call::kXdel;
    for (auto* const nodes : {&mine, &plain}) {
      std::erase_if(*nodes, [is_store](const auto& node) {
        return is_store &&
               strncasecmp(node.first.c_str(), g_run.about.c_str(), g_run.about.size()) == 0;
      });
    }
    ExpectEqual(mine == plain, "the rest of the store");
  }

  Outcome outcome_;
  bool is_right_ = true;
};

// The end of a copy in which a call has failed.
[[noreturn]] void EndCopy() {
  Outcome outcome = TakeOutcome();
  Tally& tally = *g_run.tally;
  tally.digest = Digest(tally.digest, std::to_string(DigestOf(outcome, true)));
  tally.unnoticed += outcome.trace == g_run.plain->trace ? 1 : 0;
  // The library does not look at the reason of a failure, unless it tries again.
  const std::uint64_t digest = DigestOf(outcome, false);
  const bool is_same = g_run.failed->effect != Effect::kOnward || g_run.tally->last_digest == 0 ||
                       g_run.tally->last_digest == digest;
  if (g_run.failed->effect == Effect::kOnward) {
    g_run.tally->last_digest = digest;
  }
  Verdict verdict(std::move(outcome));
  verdict.Judge();
  if (!is_same) {
    std::printf("%s: call %d of %s (%s): %s leads to something else than the way before\n",
                g_run.scenario->name, g_run.number, NameOf(g_run.failed->call), g_run.about.c_str(),
                g_run.failed->name);
  }
  std::fflush(nullptr);
  _exit(verdict.is_right() && is_same ? 0 : 1);
}

}  // namespace

const Way* Reach(Call call, const std::string& about) {
  if (!g_is_library || g_run.tally == nullptr || g_run.failed != nullptr) {
    return nullptr;
  }
  const auto index = static_cast<std::size_t>(call);
  const int number = ++g_run.tally->calls[index];
  g_run.tally->last_digest = 0;
  for (const Way& way : Ways()) {
    if (way.call != call) {
      continue;
    }
    ++g_run.tally->failed[index];
    std::fflush(nullptr);
    const pid_t copy = fork();
    if (copy == 0) {
      g_run.failed = &way;
      g_run.about = about;
      g_run.number = number;
      g_run.event = Machine::Get().trace.size();
      return &way;
    }
    int status = 0;
    if (copy < 0 || waitpid(copy, &status, 0) != copy || status != 0) {
      if (copy < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 1) {
        std::printf("%s: call %d of %s (%s) fails: %s: the process ended with %d\n",
                    g_run.scenario->name, number, NameOf(call), about.c_str(), way.name, status);
      }
      ++g_run.tally->wrong;
    }
  }
  return nullptr;
}

Outcome RunPlain(const Scenario& scenario) {
  Perform(scenario);
  return TakeOutcome();
}

void Explore(const Scenario& scenario, const Outcome& plain, const std::set<std::string>& messages,
             Tally* tally) {
  g_run.scenario = &scenario;
  g_run.plain = &plain;
  g_run.messages = &messages;
  g_run.tally = tally;
  Perform(scenario);
  if (g_run.failed != nullptr) {
    EndCopy();
  }
}

}  // namespace kio::proof
