// Steps of an upgrade with the downloads played by the test.
#ifndef KIO_TESTS_FIRMWARE_UPGRADE_FIXTURE_H
#define KIO_TESTS_FIRMWARE_UPGRADE_FIXTURE_H

#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "image_file.h"
#include "list_text.h"

namespace kio::test {

// Starts each test at status 0 with an empty temporary directory. Only the commands that write the
// status document are run; the others are played: a download writes what `server_` has for its
// address, the list of processes is `processes_`.
class UpgradeTest : public FirmwareTest {
 protected:
  UpgradeTest() {
    host_.Set("/zentrolinks/tempdirecory", directory_.path());
    do_FwUpgradeAction('0');
    Forget();
    host_.on_command = [this](const std::string& command) { Play(command); };
  }
  ~UpgradeTest() override {
    host_.on_command = nullptr;
    host_.run_commands = false;
    do_FwUpgradeAction('0');
    host_.Reset();
  }

  void Forget() {
    host_.ClearCommands();
    host_.ClearCalls();
  }

  // Takes one step and returns the commands that it ran, but for those of the status document.
  std::vector<std::string> Act(int action) {
    Forget();
    do_FwUpgradeAction(action);
    std::vector<std::string> commands;
    for (const std::string& command : host_.commands()) {
      if (!IsEcho(command)) {
        commands.push_back(command);
      }
    }
    return commands;
  }
  // The commands of the status document of the last step.
  [[nodiscard]] std::vector<std::string> Echoes() const {
    std::vector<std::string> commands;
    for (const std::string& command : host_.commands()) {
      if (IsEcho(command)) {
        commands.push_back(command);
      }
    }
    return commands;
  }

  [[nodiscard]] std::string Path(const std::string& file) const { return directory_.File(file); }
  [[nodiscard]] std::string Status() const { return ReadFile(Path("rsscheckfw.xml")); }
  [[nodiscard]] static std::string Document(const std::string& elements) {
    return "<?xml version=\"1.0\" ?><root>" + elements + "</root>\n";
  }
  // With the size of a missing image and the version 1.0.8.
  [[nodiscard]] static std::string Found(int result, const std::string& before = "",
                                         const std::string& size = "0") {
    return Document(before + "<fwsize>" + size + "</fwsize>\n<fwver>1.0.8</fwver>\n<result>" +
                    std::to_string(result) + "</result>");
  }

  // Take the steps from status 0 to the status in the name.
  void GoToFound() {
    server_[Address("/AB12/AB12.xml")] =
        FirmwareList(Entry(MacList({"*"}), "fw/AB12_FW1.0.8_0312"));
    Act('1');
    ASSERT_EQ(Status(), Found(2));
  }
  void GoToDownloading() {
    GoToFound();
    Act('2');
    ASSERT_EQ(Status(), Found(3));
  }
  void GoToDownloaded() {
    GoToDownloading();
    processes_ = "root 1 grep " + Tag();
    Act('9');
    ASSERT_EQ(Status(), Found(4));
  }

  [[nodiscard]] std::string Tag() const { return ("wget -O " + Path("upld.bin")).substr(0, 15); }
  [[nodiscard]] static std::string Address(const std::string& path) { return kServer + path; }

  std::map<std::string, std::string> server_;
  std::string processes_;
  TemporaryDirectory directory_;

 private:
  static bool IsEcho(const std::string& command) { return command.compare(0, 6, "echo '") == 0; }

  void Play(const std::string& command) {
    host_.run_commands = IsEcho(command) || command.compare(0, 3, "rm ") == 0;
    for (const auto& [address, contents] : server_) {
      if (command == "wget -O \"" + Path("AB12.xml") + "\" \"" + address + "\"") {
        WriteFile(Path("AB12.xml"), contents);
      }
    }
    if (command.find("ps aux") != std::string::npos) {
      WriteFile(Path("rssfwtmp.txt"), processes_);
    }
  }
};

}  // namespace kio::test

#endif
