// The devices of the scenarios: the nodes of the store.
#ifndef KIO_DIFFERENTIAL_DEVICE_H
#define KIO_DIFFERENTIAL_DEVICE_H

#include <string>

#include "random.h"

namespace kio::differential {

// Fills the store with a device. So many of a thousand nodes are absent or hold anything.
void MakeDevice(Random& random, int odd_per_thousand);

// Changes some nodes of the device in the store.
void ChangeDevice(Random& random);

// A plausible value of the node; anything for a path that no device has.
std::string ValueFor(Random& random, const std::string& path);

// A mode, a type and a key of a radio that go together.
struct Encryption {
  const char* mode;
  const char* type;
  const char* key;
};
const Encryption& GoodEncryption(Random& random);

// The path of any node of a device.
std::string AnyNode(Random& random);

}  // namespace kio::differential

#endif
