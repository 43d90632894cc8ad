// Ids that are not used twice. They are no secrets.
#ifndef HOST_RANDOM_ID_H
#define HOST_RANDOM_ID_H

#include <cstdint>
#include <string>

namespace kiohost {

// A random number, not negative.
int64_t RandomNumber();

// 16 hexadecimal digits.
std::string IdText(int64_t number);

}  // namespace kiohost

#endif  // HOST_RANDOM_ID_H
