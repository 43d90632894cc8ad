// `--replay`: a record is played against a router, by kioctl.
#ifndef HOST_RECORD_REPLAY_H
#define HOST_RECORD_REPLAY_H

#include <filesystem>

#include "options.h"
#include "status.h"

namespace kiohost {

// Plays the record against the router that the options name. Without one it starts a new process
// for a router, in which it returns with kServe as the command; the other process ends that one
// when the record was played. `programs` is the folder of this program.
Status Replay(Options* options, const std::filesystem::path& programs, int* exit_code);

}  // namespace kiohost

#endif  // HOST_RECORD_REPLAY_H
