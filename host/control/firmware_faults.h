// What a firmware server does that is not well: it is done to what the download commands of the
// library bring.
#ifndef HOST_CONTROL_FIRMWARE_FAULTS_H
#define HOST_CONTROL_FIRMWARE_FAULTS_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "control/fault_actions.h"
#include "fault_points.h"
#include "firmware.h"
#include "json.h"
#include "store.h"

namespace kiohost {

// Belongs to the thread of the library.
class FirmwareFaults {
 public:
  FirmwareFaults(const Firmware* firmware, Store* store, std::string temp_dir)
      : firmware_(firmware), store_(store), temp_dir_(std::move(temp_dir)) {}

  struct Download {
    const char* what;     // "list", "image" or "notes"
    std::string file;     // where it is saved
    std::string command;  // without the sign for the background
    bool in_background = false;
  };

  // A download command; nothing for any other one.
  std::optional<Download> Recognise(const std::string& command) const;

  // Adds the actions that a download may meet.
  static void AddKinds(const Download& download, std::vector<FaultKind>* kinds);

  // What runs instead of the download.
  static FaultPoints::Command Spoil(const Download& download, FaultKind kind, const Json& rule);

 private:
  const Firmware* firmware_;
  Store* store_;
  std::string temp_dir_;
};

}  // namespace kiohost

#endif  // HOST_CONTROL_FIRMWARE_FAULTS_H
