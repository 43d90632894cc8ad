// Firmware upgrades: the library's steps, and the writing of the image to the partition.
#ifndef HOST_FIRMWARE_H
#define HOST_FIRMWARE_H

#include <kioapp/firmware.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "command.h"
#include "events.h"
#include "status.h"
#include "store.h"

namespace kiohost {

class Firmware {
 public:
  struct Outcome {
    std::optional<std::string> document;  // nothing when it could not be written
    bool announced = false;               // the image is to be written
    int wait_seconds = 0;                 // that the app was told for it
  };

  // `partition` is the file that stands for the flash partition of the firmware.
  Firmware(Store* store, Events* events, const std::string& temp_dir, std::string partition)
      : store_(store),
        events_(events),
        temp_dir_(temp_dir),
        status_file_(temp_dir + "/rsscheckfw.xml"),
        partition_(std::move(partition)) {}

  // Takes one step. A search that fails is an event that tells why.
  Outcome Act(unsigned char action);

  // The status document of the last step, if there was one.
  const std::optional<std::string>& last_status() const { return last_status_; }

  // The step of the last document that could be written.
  int step() const { return last_result_; }

  // What each download command begins with, and the file into which the image is fetched.
  std::string DownloadBeginning() const;
  std::string ImageFile() const;

  struct State {
    std::optional<std::string> last_status;
    int step = KIOAPP_FW_IDLE;
    FwXmlData found = {};
    std::optional<std::string> partition;  // what the partition holds
  };
  State Save() const;
  // Whether the library can be brought to the step of a state: to the one that it is at, or to the
  // beginning.
  bool CanRestore(const State& state) const;
  Status Restore(const State& state);

  // Checks the image that was fetched and writes it to the partition; the router runs it from then
  // on. A bad one is refused, and the partition stays as it is.
  void WriteImage();

 private:
  bool Refuse(const std::string& file);
  void TellStep(unsigned char action, const std::string& failure);
  void TellWriting(bool ok, const std::string& text);
  std::string WhySearchFailed(const std::vector<CommandResult>& results);

  Store* store_;
  Events* events_;
  std::string temp_dir_;
  std::string status_file_;
  std::string partition_;
  std::optional<std::string> last_status_;
  Json last_told_;                    // of a step, to clients
  int last_result_ = KIOAPP_FW_IDLE;  // of the last document that could be written
};

}  // namespace kiohost

#endif  // HOST_FIRMWARE_H
