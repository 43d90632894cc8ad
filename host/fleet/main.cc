// kiofleet: many virtual routers at once.
#include <kioapp/version.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>

#include "fleet.h"
#include "fleet_options.h"
#include "printable_text.h"

int main(int argc, char** argv) {
  using kiofleet::FleetOptions;
  FleetOptions options;
  kiofleet::Status status = kiofleet::ParseFleetOptions(argc, argv, &options);
  if (status.ok() && options.command != FleetOptions::Command::kServe) {
    const bool help = options.command == FleetOptions::Command::kHelp;
    const int written = help ? std::fputs(kiofleet::FleetHelp(), stdout)
                             : std::printf("kiofleet %d.%d.%d\n", KIOAPP_VERSION_MAJOR,
                                           KIOAPP_VERSION_MINOR, KIOAPP_VERSION_PATCH);
    if (written < 0 || std::fflush(stdout) != 0) {
      status = {kiofleet::ExitCode::kOutput, "cannot write the output"};
    }
  } else if (status.ok()) {
    // Stores and logs hold passwords.
    umask(S_IRWXG | S_IRWXO);
    std::error_code error;
    const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe", error);
    status = kiofleet::Fleet(options, here.parent_path() / "kiohost").Run();
  }
  if (!status.ok()) {
    kiohost::PrintLine(stderr, "kiofleet: " + status.reason());
  }
  return static_cast<int>(status.code());
}
