#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include "commands.h"
#include "completion.h"
#include "version.h"

namespace kioctl {
namespace {

constexpr char kFooter[] = R"(
Passwords: of --password-file, of KIO_PASSWORD, or from a prompt.
Exit codes: 0 done, 1 refused, 2 usage, 3 not logged in, 4 unreachable, 5 timeout,
6 not in force, 7 a file or this system, 8 different, 130 interrupted.
)";

constexpr int kMostConfirmSeconds = 3600;
constexpr int kLeastConfirmSeconds = 5;

// A sub-command that is run when it is named; `name` is the whole of it.
CLI::App* Add(CLI::App* parent, Options* options, const std::string& name, const std::string& word,
              const std::string& description) {
  CLI::App* const command = parent->add_subcommand(word, description);
  command->fallthrough();
  // The last one that is named is what is run.
  command->final_callback([options, name] { options->command = name; });
  return command;
}

void AddGeneral(CLI::App* app, Options* options) {
  app->add_option("--router", options->routers,
                  "The router's address; more than once for several (KIO_ROUTER)")
      ->type_name("URL")
      ->take_all()
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app->add_flag("--json", options->json, "Print JSON");
  app->add_option("--color", options->colour, "Colours: auto, always or never")
      ->type_name("WHEN")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  app->add_option("--password-file", options->password_file,
                  "A file of mode 600 that holds the password")
      ->type_name("FILE");
  app->add_option("--timeout", options->timeout, "Seconds that a request may take")
      ->type_name("S")
      ->check(CLI::Range(1, kMostConfirmSeconds));
}

void AddIfMatchOption(CLI::App* command, Options* options) {
  command->add_option("--if-match", options->if_match, "Only when this apply is the last one")
      ->type_name("ID");
}

void AddWaitOptions(CLI::App* command, Options* options) {
  command->add_flag("--early", options->early, "Do not wait longer than the router needs");
  command->add_option("--grace", options->grace, "Seconds beyond the promised ones")
      ->type_name("S")
      ->check(CLI::NonNegativeNumber);
}

void AddChangeOptions(CLI::App* command, Options* options) {
  command->add_flag("--dry-run", options->dry_run, "Tell what would change, and change nothing");
  command
      ->add_option("--confirm-within", options->confirm_within,
                   "Go back unless kioctl confirm comes in time")
      ->type_name("S")
      ->check(CLI::Range(kLeastConfirmSeconds, kMostConfirmSeconds));
  AddIfMatchOption(command, options);
  command->add_flag("--wait", options->wait, "Wait until it is in force");
  AddWaitOptions(command, options);
}

void AddSessionCommands(CLI::App* app, Options* options) {
  Add(app, options, "login", "login", "Log this machine in");
  Add(app, options, "logout", "logout", "End the login");
  Add(app, options, "device", "device",
      "Show what the router is and what became of the last change");
  CLI::App* const events =
      Add(app, options, "events", "events", "Print what happens, as it happens");
  events->add_option("--count", options->count, "End after as many events")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  events->add_option("--since", options->since, "Begin behind the event with this id")
      ->type_name("ID");
  CLI::App* const wait =
      Add(app, options, "wait", "wait", "Wait until the router is back and the change is in force");
  wait->add_option("--apply", options->apply_id, "The id of the change (the last one)")
      ->type_name("ID");
  wait->add_option("--boot", options->boot_id, "The router's bootId before the change")
      ->type_name("ID");
  wait->add_option("--for", options->promised, "Seconds that the router has promised")
      ->type_name("S")
      ->check(CLI::NonNegativeNumber);
  AddWaitOptions(wait, options);
}

void AddSettingsCommands(CLI::App* app, Options* options) {
  CLI::App* const send = Add(app, options, "send", "send", "Send a settings document");
  send->add_option("DOC", options->operand, "The document; - for standard input")->required();
  AddChangeOptions(send, options);
  send->add_flag("--cloning", options->cloning, "Take over another access point's radios only");
  send->add_flag("--full", options->full, "With --cloning: bring everything up anew");
  CLI::App* const confirm =
      Add(app, options, "confirm", "confirm", "Keep settings that go back otherwise");
  confirm->add_flag("--take-back", options->take_back, "Go back at once instead");
  AddIfMatchOption(confirm, options);
  Add(app, options, "result", "result", "Show the result of the last exchange");
}

void AddVariableCommands(CLI::App* app, Options* options) {
  CLI::App* const get = Add(app, options, "get", "get", "Print the value of a variable");
  get->add_option("NAME", options->operand, "A name, or a path such as Device/DeviceName")
      ->required();
  get->add_flag("--path", options->node_path, "Print the path of its node instead");
  for (const auto& [word, description] :
       {std::pair{"set", "Set a variable; apply and commit bring it into force"},
        std::pair{"validate", "Ask whether a variable takes a value"}}) {
    CLI::App* const command = Add(app, options, word, word, description);
    command->add_option("NAME", options->operand, "A name, or a path such as Device/DeviceName")
        ->required();
    command->add_option("VALUE", options->value,
                        "The value; - for standard input, which a password must come by");
  }
  CLI::App* const vars = Add(app, options, "vars", "vars", "List the variables with their values");
  vars->add_option("PATTERN", options->operand, "A part of a name or path, or a pattern with *");
  vars->add_flag("--secrets", options->secrets, "Show passwords and keys");
  vars->add_flag("--catalogue", options->catalogue, "List what each one takes instead");
  vars->add_option("--changed-since", options->changed_since,
                   "Only what has changed since an apply")
      ->type_name("ID");
  CLI::App* const batch = Add(app, options, "batch", "batch", "Set several variables at once");
  batch->add_option("FILE", options->operand, "name=value pairs; - for standard input")->required();
  batch->add_flag("--dry-run", options->dry_run, "Tell what would change, and change nothing");
  batch->add_option("--separator", options->separator, "The character between the pairs (&)")
      ->type_name("C");
  AddIfMatchOption(batch, options);
  Add(app, options, "forget", "forget", "Forget what was set and not applied");
  AddIfMatchOption(Add(app, options, "apply", "apply", "Apply what was set"), options);
  CLI::App* const commit =
      Add(app, options, "commit", "commit", "Bring what was applied into force");
  AddIfMatchOption(commit, options);
  commit->add_flag("--wait", options->wait, "Wait until it is in force");
  commit->add_option("--for", options->promised, "Seconds that the router needs")->type_name("S");
  AddWaitOptions(commit, options);
}

void AddFirmwareCommands(CLI::App* app, Options* options) {
  CLI::App* const firmware = app->add_subcommand("firmware", "The steps of a firmware upgrade");
  firmware->require_subcommand(1)->fallthrough();
  Add(firmware, options, "firmware status", "status", "Show where the upgrade stands");
  Add(firmware, options, "firmware search", "search", "Look for newer firmware");
  Add(firmware, options, "firmware download", "download", "Have the router fetch it");
  CLI::App* const upgrade =
      Add(firmware, options, "firmware upgrade", "upgrade", "Have the router write it");
  AddIfMatchOption(upgrade, options);
  upgrade->add_flag("--wait", options->wait, "Wait until the router runs it");
  AddWaitOptions(upgrade, options);
}

void AddBackupCommands(CLI::App* app, Options* options) {
  CLI::App* const backup = Add(app, options, "backup", "backup", "Write the settings to a file");
  backup->add_option("FILE", options->operand, "The file; - for standard output")->required();
  backup->add_flag("--secrets", options->secrets,
                   "With passwords and keys, sealed by a passphrase (KIO_PASSPHRASE or a prompt)");
  CLI::App* const restore =
      Add(app, options, "restore", "restore", "Restore the settings of a file");
  restore->add_option("FILE", options->operand, "The file; - for standard input")->required();
  AddChangeOptions(restore, options);
  restore->add_flag("--other-firmware", options->other_firmware,
                    "Take the backup of another firmware of this model");
  restore->add_flag("--yes", options->yes, "Do not ask after showing the differences");
}

void AddReplayCommand(CLI::App* app, Options* options) {
  CLI::App* const replay =
      Add(app, options, "replay", "replay", "Play a record and tell the first answer that differs");
  replay->add_option("FILE", options->operand, "What kiohost --record has written")->required();
  replay
      ->add_option("--secrets", options->secrets_file,
                   "What kiohost --record-secrets has written: a file of mode 600")
      ->type_name("FILE");
  replay->add_flag("--real-time", options->real_time, "Wait between requests as they were sent");
  replay
      ->add_option("--patience", options->patience,
                   "Seconds for which a read is repeated until its answer is the same (5)")
      ->type_name("S")
      ->check(CLI::NonNegativeNumber);
}

void AddComparisonCommands(CLI::App* app, Options* options) {
  CLI::App* const diff = Add(app, options, "diff", "diff",
                             "Tell which settings differ between two of router, archive, profile "
                             "and document");
  diff->add_option("A", options->operand,
                   "A URL, a delivered profile, or a file; - for standard input")
      ->required();
  diff->add_option("B", options->value, "The other one")->required();
  diff->add_flag("--secrets", options->secrets,
                 "Compare the passwords and keys of routers, too, without showing them");
  CLI::App* const capture = Add(app, options, "capture", "capture",
                                "Make a profile for the virtual router of a router's state");
  capture->add_option("-o,--output", options->output, "The file; - for standard output")
      ->type_name("FILE");
}

void AddDocumentCommands(CLI::App* app, Options* options) {
  CLI::App* const lint =
      Add(app, options, "lint", "lint", "Tell all faults of a settings document in one run");
  lint->add_option("DOC", options->operand, "The document; - for standard input")->required();
  lint->add_option("--profile", options->profile,
                   "The device: a delivered profile, or a file (dual-band-router); or a --router")
      ->type_name("PROFILE");
  lint->add_option("--form", options->form, "text, json, sarif or github")
      ->type_name("FORM")
      ->check(CLI::IsMember({"text", "json", "sarif", "github"}));
  lint->add_flag("--fix", options->fix, "Change the document where one change is likely");
  CLI::App* const schema =
      Add(app, options, "schema", "schema", "Print the grammar of the documents");
  schema->add_option("FORM", options->operand, "relaxng or json")
      ->check(CLI::IsMember({"relaxng", "json"}));
  schema->add_option("--spec-version", options->version, "The version of the documents: 1.0 or 1.1")
      ->type_name("V")
      ->check(CLI::IsMember({"1.0", "1.1"}));
  schema->add_flag("--firmware-list", options->firmware_list, "That of the firmware list instead");
}

void AddConformCommand(CLI::App* app, Options* options) {
  ConformOptions* const conform = &options->conform;
  CLI::App* const command =
      Add(app, options, "conform", "conform", "Try out on a router what the interface promises");
  command->add_option(
      "CASE", conform->cases,
      "The router's address, with ://, and cases or groups to try; * and ? as in a shell");
  command->add_flag("--list", conform->list, "List the cases, and try nothing");
  command->add_flag("--yes", options->yes, "Do not ask before it begins");
  command
      ->add_option("--seed", conform->seed, "Try them in a random order, which this number decides")
      ->type_name("N");
  command->add_option("--form", conform->form, "text or tap; tap in a pipe unless given")
      ->type_name("FORM")
      ->check(CLI::IsMember({"text", "tap"}));
  command->add_option("--junit", conform->junit, "Write the results for JUnit's readers")
      ->type_name("FILE");
  command->add_option("--report", conform->report, "Write a page with the results")
      ->type_name("FILE");
  command
      ->add_option("--deviations", conform->deviations,
                   "A file with a line NAME: REASON for each deviation that is agreed on")
      ->type_name("FILE");
  command
      ->add_option("--control", conform->control,
                   "The control port of a virtual router, to let time pass")
      ->type_name("URL");
  command->add_flag("--slow", conform->slow, "Wait in real time where a case needs it");
  command->add_flag("--disruptive", conform->disruptive, "Try also what may cut this machine off");
}

// A router may stand among the operands of conform.
void TakeRouterOfOperands(Options* options) {
  auto& operands = options->conform.cases;
  const auto is_router = [](const std::string& text) {
    return text.find("://") != std::string::npos;
  };
  std::copy_if(operands.begin(), operands.end(), std::back_inserter(options->routers), is_router);
  std::erase_if(operands, is_router);
}

void TakeRoutersOfEnvironment(Options* options) {
  const char* const routers = getenv("KIO_ROUTER");
  if (!options->routers.empty() || routers == nullptr) {
    return;
  }
  std::istringstream words(routers);
  for (std::string router; words >> router;) {
    options->routers.push_back(router);
  }
}

}  // namespace

std::optional<ExitCode> ReadCommandLine(int argc, char** argv, Options* options) {
  CLI::App app("The app's side of a router on a command line, over its HTTP interface.", "kioctl");
  app.footer(kFooter);
  app.set_version_flag("--version", std::string("kioctl ") + kVersionText);
  app.set_help_all_flag("--help-all", "Print the help of all commands");
  app.require_subcommand(1);
  AddGeneral(&app, options);
  AddSessionCommands(&app, options);
  AddSettingsCommands(&app, options);
  AddVariableCommands(&app, options);
  AddFirmwareCommands(&app, options);
  AddBackupCommands(&app, options);
  AddReplayCommand(&app, options);
  AddComparisonCommands(&app, options);
  AddDocumentCommands(&app, options);
  AddConformCommand(&app, options);
  if (argc > 1 && std::string(argv[1]) == "complete") {
    Complete(app, {argv + 2, argv + argc});
    return ExitCode::kDone;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return ExitCode::kDone;
    }
    std::fprintf(stderr, "kioctl: %s\n  next: kioctl --help, or kioctl COMMAND --help\n",
                 error.what());
    return ExitCode::kUsage;
  }
  TakeRouterOfOperands(options);
  // A router of the environment is not asked about a document unless it is named.
  if (NeedsNoRouter(options->command) || options->conform.list) {
    return std::nullopt;
  }
  TakeRoutersOfEnvironment(options);
  if (options->routers.empty()) {
    std::fputs("kioctl: no router is named\n  next: give --router URL, or set KIO_ROUTER\n",
               stderr);
    return ExitCode::kUsage;
  }
  return std::nullopt;
}

}  // namespace kioctl
