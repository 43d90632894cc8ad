#include "random_id.h"

#include <cstdio>
#include <limits>
#include <random>

namespace kiohost {

int64_t RandomNumber() {
  std::random_device device;
  return std::uniform_int_distribution<int64_t>(0, std::numeric_limits<int64_t>::max())(device);
}

std::string IdText(int64_t number) {
  char text[2 * sizeof number + 1];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(number));
  return text;
}

}  // namespace kiohost
