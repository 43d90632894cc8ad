// Core dumps of the process, which hold the password.
#ifndef HOST_CORE_DUMPS_H
#define HOST_CORE_DUMPS_H

namespace kiohost {

// Keeps the process from leaving core dumps. Returns false when the system refuses.
bool ForbidCoreDumps();

}  // namespace kiohost

#endif  // HOST_CORE_DUMPS_H
