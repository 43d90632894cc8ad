// The steps of a firmware upgrade.
#include <cstdio>
#include <cstring>

#include "device.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

// A list of processes as `ps` prints it, with the download, the search for it, both or neither.
std::string Processes(Random& random) {
  std::string command;
  for (const char character : Machine::Get().last_background_command) {
    if (character != '"' && character != '\'') {
      command += character;
    }
  }
  const std::string tag = command.substr(0, 15);
  std::string download = "root 17 " + command + " ";
  const std::string search = "root 18 sh -c echo ps aux | grep " + tag + " root 19 grep " + tag;
  switch (random.Below(7)) {
    case 0:
      return "";
    case 1:
    case 2:
      return search + "\n";
    case 3:
      return download + search + "\n";
    case 4:
      return search + " " + download + "\n";
    case 5:
      return download;
    default:
      return Odd(random);
  }
}

std::string ListFile(Random& random) {
  std::string list = MakeFirmwareList(random);
  if (random.OneIn(8)) {
    // Only the first 4096 characters are read.
    list.insert(6 < list.size() ? 6 : 0,
                std::string(static_cast<std::size_t>(random.Between(3000, 4200)), ' '));
  }
  return random.OneIn(10) ? Mutated(random, list, 3) : list;
}

// Prepares the files that the next step finds.
void PrepareFiles(Random& random) {
  Machine& machine = Machine::Get();
  machine.files_ending.clear();
  if (!random.OneIn(12)) {
    machine.files_ending[".xml"] = {ListFile(random)};
  }
  if (!random.OneIn(12)) {
    machine.files_ending["rssfwtmp.txt"] = {Processes(random)};
  }
  constexpr std::uint64_t kSizes[] = {0,       1,       999,      1000,     1001,     1023999,
                                      1024000, 2621440, 19999999, 20000000, 20000001, 4294967295};
  if (!random.OneIn(6)) {
    const std::uint64_t size = random.OneIn(3) ? random.Next() % 30000000 : random.Of(kSizes);
    machine.files_ending["bin"] = {"", size};
    machine.files_ending["AB12"] = {"", size};
  }
}

void TakeStep(Random& random, int action) {
  PrepareFiles(random);
  Note("action", {action});
  do_FwUpgradeAction(action);
  Answer("do_FwUpgradeAction", {});
}

void RunUpgrade(Random& random) {
  // At times the directory is read from the store at the first step.
  if (random.OneIn(2)) {
    std::memset(rssXmlData.tmpPath, 0, sizeof(rssXmlData.tmpPath));
  } else if (random.OneIn(2)) {
    std::snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "%s", Directory(random).c_str());
  }
  AcceptChanges();
  if (random.Chance(80)) {
    TakeStep(random, KIOAPP_FW_INIT);
  }
  constexpr int kSteps[] = {KIOAPP_FW_SEARCH, KIOAPP_FW_DOWNLOAD, KIOAPP_FW_REPORT,
                            KIOAPP_FW_REPORT, KIOAPP_FW_REPORT,   KIOAPP_FW_UPGRADE};
  constexpr int kActions[] = {'0', '1', '2', '3', '4', '5', '9', 'x', '\'', ' ', '\n', 200, 1000};
  for (const int step : kSteps) {
    TakeStep(random, step);
    if (random.OneIn(6)) {
      TakeStep(random, random.Of(kActions));
    }
    if (random.OneIn(8)) {
      ChangeDevice(random);
    }
  }
}

// Steps in any order, from any status.
void RunSteps(Random& random) {
  constexpr int kActions[] = {'0', '1', '2', '3', '4', '9', '%'};
  for (int i = random.Between(1, 8); i > 0; --i) {
    TakeStep(random, random.Of(kActions));
  }
}

constexpr Kind kKinds[] = {{"upgrade", 7, RunUpgrade}, {"steps of an upgrade", 2, RunSteps}};

}  // namespace

const std::span<const Kind> kUpgradeKinds = kKinds;

}  // namespace kio::differential
