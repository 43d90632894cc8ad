// kioctl conform: tries out on a router what the interface promises.
#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "conform/runner.h"
#include "files.h"
#include "interrupt.h"
#include "password.h"
#include "version.h"

namespace kioctl {
namespace {

using conform::Case;
using conform::Outcome;
using conform::Verdict;
using Cases = std::vector<const Case*>;

constexpr char kSaved[] = "conform-settings.json";

size_t CountOf(const Cases& cases, bool Case::*member) {
  return static_cast<size_t>(std::count_if(cases.begin(), cases.end(),
                                           [member](const Case* one) { return one->*member; }));
}

std::string EffectsOf(const Case& one) {
  std::string effects = one.changes ? "changes" : "reads";
  effects += one.logs_in ? ", logs in and out" : "";
  effects += one.disruptive ? ", disruptive" : "";
  effects += one.seconds > 0 ? ", " + std::to_string(one.seconds) + " s" : "";
  effects += one.slow ? ", slow" : "";
  return effects;
}

void ShowList(const Output& out, const Cases& cases) {
  nlohmann::json list = nlohmann::json::array();
  std::vector<Row> rows;
  for (const Case* const one : cases) {
    rows.push_back({one->name, EffectsOf(*one), one->promise});
    list.push_back({{"name", one->name},
                    {"promise", one->promise},
                    {"changes", one->changes},
                    {"disruptive", one->disruptive},
                    {"logsIn", one->logs_in},
                    {"seconds", one->seconds},
                    {"slow", one->slow}});
  }
  out.Json(list);
  out.Table({"CASE", "WHAT IT DOES", "WHAT IS PROMISED"}, rows);
}

// Says what will be done to the router.
void ShowPlan(const Context& context, const Cases& cases, const std::string& router) {
  const Output& out = *context.out;
  const ConformOptions& options = context.options->conform;
  out.Note("conform will try " + std::to_string(cases.size()) + " cases on " +
           context.router->url() + ": " + router);
  out.Note("  this machine is logged out, and in again");
  if (const size_t logins = CountOf(cases, &Case::logs_in); logins > 0) {
    out.Note("  " + std::to_string(logins) + " cases log in and out, and send wrong keys");
  }
  if (const size_t changes = CountOf(cases, &Case::changes); changes > 0) {
    out.Note(
        "  " + std::to_string(changes) +
        " cases change settings, the name above all: each restores the backup that is made first");
    out.Note("  what was set and not applied is forgotten");
  }
  if (const size_t disruptive = CountOf(cases, &Case::disruptive); disruptive > 0) {
    out.Note("  " + std::to_string(disruptive) + " cases may cut this machine off: " +
             (options.disruptive ? "they are run" : "they are left out"));
  }
  if (!options.control.empty()) {
    out.Note("  the clock of the virtual router is moved by " + options.control);
  }
}

void TellPlainly(const Output& out, const Outcome& outcome) {
  const std::string name = outcome.one->name;
  switch (outcome.verdict) {
    case Verdict::kPassed:
      out.Line("passed    " + name, Tone::kGood);
      break;
    case Verdict::kSkipped:
      out.Line("skipped   " + name + ": " + Printable(outcome.why), Tone::kQuiet);
      break;
    case Verdict::kDeviates:
      out.Line("deviates  " + name + ": " + Printable(outcome.agreed));
      break;
    case Verdict::kFailed:
      out.Line("FAILED    " + name, Tone::kBad);
      out.Line("  promised: " + std::string(outcome.one->promise));
      out.Line("  but " + Printable(outcome.why));
      break;
  }
}

nlohmann::json ToJson(const conform::Run& run) {
  nlohmann::json cases = nlohmann::json::array();
  for (const Outcome& outcome : run.outcomes) {
    nlohmann::json one = {{"name", outcome.one->name},
                          {"outcome", WordOf(outcome.verdict)},
                          {"promise", outcome.one->promise},
                          {"seconds", outcome.seconds}};
    if (!outcome.why.empty()) {
      one["why"] = outcome.why;
    }
    if (!outcome.agreed.empty()) {
      one["deviation"] = outcome.agreed;
    }
    if (!outcome.transcript.empty()) {
      one["said"] = outcome.transcript;
    }
    cases.push_back(std::move(one));
  }
  return {{"url", run.url},
          {"device", run.router},
          {"order", run.order},
          {"passed", run.Count(Verdict::kPassed)},
          {"failed", run.Count(Verdict::kFailed)},
          {"deviate", run.Count(Verdict::kDeviates)},
          {"skipped", run.Count(Verdict::kSkipped)},
          {"deviationsGone", run.Gone()},
          {"cutShort", run.cut_short},
          {"cases", cases}};
}

Cases ChosenCases(const ConformOptions& options) {
  Cases cases;
  const std::string unknown = conform::SelectCases(options.cases, &cases);
  if (!unknown.empty()) {
    throw Failure{ExitCode::kUsage, "no case or group fits " + unknown,
                  "list them: kioctl conform --list"};
  }
  if (options.seed) {
    conform::Shuffle(*options.seed, &cases);
  }
  return cases;
}

conform::Deviations AgreedDeviations(const std::string& file) {
  conform::Deviations deviations;
  if (!file.empty()) {
    const std::string fault = conform::ReadDeviations(ReadInput(file), &deviations);
    if (!fault.empty()) {
      throw Failure{ExitCode::kUsage, file + ":" + fault,
                    "write a line NAME: REASON for each deviation"};
    }
  }
  return deviations;
}

conform::Conversation::Means MeansOf(Context* context) {
  const Options& options = *context->options;
  return {.url = context->router->url(),
          .control = options.conform.control,
          .seconds = options.timeout,
          .disruptive = options.conform.disruptive,
          .slow = options.conform.slow,
          .password = [context] { return context->router->GivenPassword(); },
          .note = [context](const std::string& text) { context->out->Note(text); }};
}

// Restores what the cases have left, whatever was pressed before. Says how to do it by hand when it
// fails.
void RestoreInTheEnd(Context* context, conform::Conversation* talk, conform::Keeper* keeper) {
  if (talk->facts().way_back == conform::WayBack::kNone) {
    return;
  }
  std::string why;
  try {
    talk->Insist();
    keeper->BringBackAll();
    return;
  } catch (const conform::Broken& broken) {
    why = broken.what;
  } catch (const Failure& failure) {
    why = failure.what;
  }
  WriteOutput(kSaved, talk->facts().archive);
  throw Failure{ExitCode::kNotInForce,
                "the settings of the router were not restored: " + talk->Masked(why),
                "they are in " + std::string(kSaved) + ": kioctl --router " +
                    context->router->url() + " restore " + kSaved};
}

void RunCases(Context* context, const Cases& cases, const conform::Deviations& deviations,
              conform::Run* run) {
  const Output& out = *context->out;
  const bool tap = context->options->conform.form == "tap" ||
                   (context->options->conform.form == "auto" && isatty(STDOUT_FILENO) == 0);
  conform::Conversation talk(MeansOf(context));
  conform::Keeper keeper(&talk);
  try {
    keeper.Learn(CountOf(cases, &Case::changes) > 0);
  } catch (const conform::Broken& broken) {
    throw Failure{ExitCode::kUnreachable, broken.what,
                  "check that --router names a router with this interface, and its password"};
  }
  if (!talk.facts().documents.empty()) {
    run->router += ", documents of version " + talk.facts().documents;
  }
  if (tap && !out.json()) {
    out.Raw(conform::TapHead(*run, cases.size()));
  }
  conform::Runner runner(&talk, &keeper, &deviations, [&](const Outcome& outcome, size_t number) {
    if (tap && !out.json()) {
      out.Raw(conform::TapLines(outcome, number));
    } else {
      TellPlainly(out, outcome);
    }
  });
  try {
    runner.RunAll(cases, run);
  } catch (const Failure&) {
    RestoreInTheEnd(context, &talk, &keeper);
    throw;
  }
  RestoreInTheEnd(context, &talk, &keeper);
  if (tap && !out.json()) {
    out.Raw(conform::TapTail(*run));
  }
}

void Conclude(Context* context, const conform::Run& run) {
  const ConformOptions& options = context->options->conform;
  const Output& out = *context->out;
  if (!options.junit.empty()) {
    WriteOutput(options.junit, conform::JunitReport(run));
  }
  if (!options.report.empty()) {
    WriteOutput(options.report, conform::PageReport(run));
  }
  out.Json(ToJson(run));
  for (const std::string& name : run.Gone()) {
    out.Note(name + ": the deviation no longer happens; take it out of " + options.deviations);
  }
  if (!run.cut_short.empty()) {
    throw Failure{ExitCode::kUnreachable, run.cut_short, "see whether it restarts: kioctl wait"};
  }
  if (run.Count(Verdict::kFailed) > 0) {
    Failure failure{ExitCode::kRefused, "the router does not conform: " + run.Summary(),
                    "docs/http.md has what is promised; --report FILE shows what was said"};
    failure.is_reported = true;
    throw failure;
  }
  out.Note((run.Count(Verdict::kDeviates) > 0 ? "the router conforms, with deviations: "
                                              : "the router conforms: ") +
           run.Summary());
}

}  // namespace

void RunConform(Context* context) {
  const ConformOptions& options = context->options->conform;
  const Cases cases = ChosenCases(options);
  if (options.list) {
    ShowList(*context->out, cases);
    return;
  }
  if (context->options->routers.size() > 1) {
    throw Failure{ExitCode::kUsage, "conform tries one router at a time", "name one router"};
  }
  const conform::Deviations deviations = AgreedDeviations(options.deviations);
  const nlohmann::json device = context->router->Device();
  conform::Run run;
  run.url = context->router->url();
  run.router = device.value("model", "") + " \"" + device.value("name", "") + "\"";
  run.program = std::string("kioctl ") + kVersionText;
  run.order = options.seed ? "in the order of seed " + std::to_string(*options.seed)
                           : std::string("in the order of the list");
  ShowPlan(*context, cases, Printable(run.router));
  if (!context->options->yes && !Confirms("Go on?")) {
    throw Failure{ExitCode::kUsage, "nothing was tried: nobody has agreed",
                  "answer y on a terminal, or give --yes"};
  }
  RunCases(context, cases, deviations, &run);
  Conclude(context, run);
}

}  // namespace kioctl
