// The check of an app's key (kioapp/auth.h), for the thread that does not call the library. A test
// holds it to the library's own answers.
#ifndef HOST_LOGIN_KEY_H
#define HOST_LOGIN_KEY_H

#include <string>

namespace kiohost {

// Whether a request from an address holds its key at this second of the uptime. It takes as long
// for a wrong key as for a good one.
bool HoldsGoodKey(const std::string& request, const std::string& address, std::string password,
                  long uptime);

}  // namespace kiohost

#endif  // HOST_LOGIN_KEY_H
