// The levels of the messages about firmware.
#include "support/log_levels.h"

#include <string>

#include "upgrade_fixture.h"

namespace kio::test {
namespace {

using Entries = std::string;

class FirmwareLevelsTest : public UpgradeTest {
 protected:
  // Reads a list with these entries.
  static std::function<void()> Reading(const Entries& entries) {
    return [entries] {
      std::string list = FirmwareList(entries);
      do_FwXml_Parser(list.data(), nullptr, nullptr);
    };
  }
};

TEST_F(FirmwareLevelsTest, List) {
  const auto of_version_2 = [] {
    std::string list = FirmwareList("");
    list.replace(list.find("<major>1"), 8, "<major>2");
    do_FwXml_Parser(list.data(), nullptr, nullptr);
  };
  const auto without_a_list = [] {
    std::string list = FirmwareList("");
    list.replace(list.find("FirmwareList"), 12, "FirmwareLost");
    do_FwXml_Parser(list.data(), nullptr, nullptr);
  };
  const Entries running = Entry(MacList({"*"}), "fw/AB12_FW1.0.2");
  const Entries nowhere = Element("Firmware", MacList({"*"}));
  ExpectLevels({
      {"what was received", Reading(""), kActionLevel,
       "---- Received FW XML Data Begin ----\n" + FirmwareList("") +
           "\n---- Received FW XML Data End ----\n"},
      {"a pattern", Reading(Entry(MacList({"01:*"}), "n")), kDetailLevel,
       "Match '01:*' with '00:1A:2B:3C:4D:5E'\n"},
      {"a range", Reading(Entry(Element("MacList", Range("01:00", "02:00")), "n")), kDetailLevel,
       "Match '01:00'~'02:00' with '00:1A:2B:3C:4D:5E'\n"},
      {"an entry without an address", Reading(nowhere), kActionLevel, "FwURL not found\n"},
      {"another version", of_version_2, kActionLevel, "wrong specVersion 2.0\n"},
      {"a document without a list", without_a_list, kActionLevel, "check FirmwareList fail\n"},
      {"what was found", Reading(running), kDetailLevel, "done, ret=2\n"},
      {"the file that runs", Reading(running), kDetailLevel,
       "Final Match 'AB12_FW1.0.2.bin'(16) with 'AB12_FW1.0.2.bin'\n"},
      {"the result", Reading(running), kDetailLevel, "done, ret=1\n"},
  });
}

TEST_F(FirmwareLevelsTest, Upgrade) {
  const auto initialise = [] { do_FwUpgradeAction('0'); };
  const auto refuse = [] {
    do_FwUpgradeAction('0');
    do_FwUpgradeAction('3');
  };
  const auto look_at_processes = [this] {
    Act('0');
    GoToDownloading();
    processes_ = "root 7 sh";
    Act('9');
  };
  ExpectLevels({
      {"a banner", initialise, kDetailLevel, "===FWUPGRADE_ACT_INIT===\n"},
      {"a command", initialise, kDetailLevel, "cmd=rm -f \"" + Path("rsscheckfw.xml") + "\" \""},
      {"the processes", look_at_processes, kDetailLevel,
       "==BGN==' " + Tag() + "'\nroot 7 sh\n==END==\n"},
      {"an unknown action", refuse, kDetailLevel, "===FWUPGRADE_ACT_UNKNOW===,act='3',51\n"},
      {"the document of an unknown action", refuse, kDetailLevel, "rsscheckfw.xml wrong act=3\n"},
  });
}

}  // namespace
}  // namespace kio::test
