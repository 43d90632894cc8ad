#include "scenario.h"

#include <kioapp/kioapp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <string_view>

#include "../../host/signals.h"
#include "../../host/store_api.h"
#include "../../tools/differential/device.h"
#include "../../tools/differential/document.h"
#include "../../tools/differential/variable_names.h"
#include "../host/temp_dir.h"
#include "commands.h"
#include "store_adapter.h"

using kio::differential::NamedMaker;
using kio::differential::Random;
using kiohost::CommitKind;
using kiohost::Variables;

namespace {

constexpr char kEnd = '\x1e';  // of a line of a transcript on its way to another process

constexpr CommitKind kKinds[] = {CommitKind::kSettings, CommitKind::kSettings,
                                 CommitKind::kSettings, CommitKind::kCloning,
                                 CommitKind::kFullCloning};

constexpr Variables::Action kActions[] = {
    Variables::Action::kApplyAll, Variables::Action::kApplyAll, Variables::Action::kCommit,
    Variables::Action::kVerifyAll, Variables::Action::kSurveySites};

std::string Document(Random& random) {
  if (random.OneIn(10)) {
    return MutatedDocument(random);
  }
  return TextOf(random, MakeDocument(random, random.OneIn(3) ? random.Between(1, 2) : 0));
}

std::string BatchText(Random& random) {
  std::string text;
  for (int i = random.Below(6); i > 0; --i) {
    const NamedMaker variable = PickSettable(random);
    if (variable.make != nullptr) {
      text += variable.name + "=" + variable.make(random) + "&";
    }
  }
  if (random.OneIn(2)) {
    text += "rss_Act_ApplyAllRssVars=&";
  }
  return text + (random.OneIn(3) ? "rss_Act_CommitRssVars=&" : "");
}

// One thing that a client does.
void Act(Random& random, Bench* bench) {
  switch (random.Below(8)) {
    case 0:
    case 1:
    case 2:
      bench->Exchange(Document(random), random.Of(kKinds));
      break;
    case 3:
    case 4:
      bench->Batch(BatchText(random), '&');
      break;
    case 5: {
      const NamedMaker variable = PickSettable(random);
      bench->Write(variable.name, variable.make != nullptr ? variable.make(random) : "");
      break;
    }
    case 6:
      bench->Act(random.Of(kActions));
      break;
    default:
      bench->Read(PickVariable(random).name);
      break;
  }
}

void ActDry(Random& random, Bench* bench) {
  if (random.OneIn(2)) {
    bench->DryExchange(Document(random), random.Of(kKinds));
  } else {
    bench->DryBatch(BatchText(random), '&');
  }
}

std::string ReadAll(int file) {
  std::string text;
  char piece[65536];
  for (ssize_t size = 0; (size = read(file, piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<size_t>(size));
  }
  return text;
}

void WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = write(file, text.data(), text.size());
    if (size <= 0) {
      return;
    }
    text.remove_prefix(static_cast<size_t>(size));
  }
}

}  // namespace

Bench::Bench(kiohost::Store* store, const std::string& directory)
    : store_(store),
      directory_(directory),
      exchange_(store, directory),
      variables_(store, &exchange_, &events_) {
  store_->Set("/zentrolinks/tempdirecory", directory);
  store_->Set("/zentrolinks/scriptdirecory", directory);
}

void Bench::Exchange(const std::string& document, CommitKind kind) {
  const kiohost::Exchange::Outcome outcome = exchange_.Run(document, kind);
  Note("exchange", std::to_string(static_cast<int>(outcome.kind)) + outcome.text +
                       std::to_string(outcome.wait_seconds) +
                       (outcome.apply_id.empty() ? " no id" : " id"));
  if (outcome.commit != CommitKind::kNone) {
    const unsigned int mask = exchange_.Commit(outcome.commit);
    exchange_.FinishCommit(mask, 0);
    Note("commit", std::to_string(mask));
  }
}

void Bench::Batch(const std::string& batch, char separator) {
  NoteAnswer("batch", variables_.SetBatch(batch, separator));
  Finish(variables_.TakeAfterReply());
}

void Bench::Write(const std::string& name, const std::string& value) {
  NoteAnswer("write " + name, variables_.Write(name, value));
}

void Bench::Read(const std::string& name) {
  NoteAnswer("read " + name, variables_.Read(name, false));
}

void Bench::Act(Variables::Action action) {
  NoteAnswer("action", variables_.RunAction(action, ""));
  Finish(variables_.TakeAfterReply());
}

void Bench::Discard() { variables_.Discard(); }

kiohost::Forecast Bench::DryExchange(const std::string& document, CommitKind kind) {
  kiohost::Forecast forecast;
  exchange_.RunDry(document, kind, &forecast);
  return forecast;
}

kiohost::Forecast Bench::DryBatch(const std::string& batch, char separator) {
  kiohost::Forecast forecast;
  variables_.SetBatchDry(batch, separator, &forecast);
  return forecast;
}

void Bench::NoteState() {
  for (const kiohost::Node& node : store_->List()) {
    Note("node", node.path + "=" + node.text);
  }
  Note("due", std::to_string(store_->DueActions()));
  Note("record", std::string(reinterpret_cast<const char*>(&rssXmlData), sizeof rssXmlData));
  Note("lost key", XmlErrMsg_LostKey == nullptr ? "none" : "set");
  Note("texts", std::string(string) + daemon_log_path + daemon_log_header +
                    std::to_string(daemon_log_level));
  Note("firmware", std::string(reinterpret_cast<const char*>(&fwXmlData), sizeof fwXmlData));
  Note("clients", clientauthinfo == nullptr && cur_authinfo == nullptr ? "none" : "some");
  Note("alarm", std::to_string(static_cast<int>(kiohost::AlarmState())));
  Note("result", exchange_.last_result().value_or("(none)"));
  std::ifstream file(directory_ + "/rssset_result.xml");
  Note("file", std::string(std::istreambuf_iterator<char>(file), {}));
  for (const std::string& command : CommandsSoFar()) {
    Note("command", command);
  }
}

void Bench::Note(const std::string& what, const std::string& answer) {
  transcript_.push_back(what + ": " + answer);
}

void Bench::NoteAnswer(const std::string& what, const Variables::Answer& answer) {
  Note(what, std::to_string(answer.code) + " " + answer.text + (answer.store.ok() ? "" : " fails") +
                 (answer.apply_id.empty() ? " no id" : " id"));
}

void Bench::Finish(const kiohost::AfterReply& after_reply) {
  if (after_reply.run) {
    Note("deferred commit", std::to_string(after_reply.wait_seconds));
    after_reply.run();
  }
}

std::vector<std::string> InOwnProcess(const std::function<void(Bench*)>& act) {
  int ends[2];
  if (pipe(ends) != 0) {
    return {"no pipe"};
  }
  // The same for all, as the store and the commands hold its path.
  static const TempDir directory;
  unlink(directory.File("rssset_result.xml").c_str());
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    kiohost::InstallSignals();
    daemon_log_level = 0;
    kiohost::Store store;
    if (!store.Open(":memory:", kiohost::Store::Mode::kCreate).ok()) {
      _exit(1);
    }
    kiohost::BindStore(&store);
    BindMakers(&store);
    Bench bench(&store, directory.path());
    act(&bench);
    bench.NoteState();
    std::string text;
    for (const std::string& line : bench.transcript()) {
      text += line + kEnd;
    }
    WriteAll(ends[1], text);
    _exit(0);
  }
  close(ends[1]);
  const std::string text = ReadAll(ends[0]);
  close(ends[0]);
  int status = -1;
  waitpid(child, &status, 0);
  std::vector<std::string> lines;
  for (size_t from = 0; from < text.size();) {
    const size_t end = text.find(kEnd, from);
    lines.push_back(text.substr(from, end - from));
    from = end == std::string::npos ? text.size() : end + 1;
  }
  if (status != 0) {
    lines.push_back("ended with " + std::to_string(status));
  }
  return lines;
}

void RunScenario(std::uint64_t seed, bool with_dry_runs, Bench* bench) {
  Random device(seed, 1);
  Random history(seed, 2);
  Random dry(seed, 3);
  Random after(seed, 4);
  const std::string directory = bench->store()->Get("/zentrolinks/tempdirecory").value_or("");
  kio::differential::MakeDevice(device, device.OneIn(2) ? 0 : 20);
  bench->store()->Set("/zentrolinks/tempdirecory", directory);
  bench->store()->Set("/zentrolinks/scriptdirecory", directory);
  for (int i = history.Below(4); i > 0; --i) {
    Act(history, bench);
  }
  if (with_dry_runs) {
    for (int i = dry.Between(1, 2); i > 0; --i) {
      ActDry(dry, bench);
    }
  }
  for (int i = after.Between(1, 3); i > 0; --i) {
    Act(after, bench);
  }
}
