// The devices of the scenarios: what the store holds.
#ifndef KIO_DIFFERENTIAL_DEVICE_H
#define KIO_DIFFERENTIAL_DEVICE_H

#include <string>

#include "random.h"

namespace kio::differential {

// Fills the store with a device. Of a thousand nodes, `strange` are absent or hold anything.
void MakeDevice(Random& random, int strange);

// Changes some nodes of the device that is there.
void ChangeDevice(Random& random);

// A value that the node may well have; anything for a path that no device has.
std::string ValueFor(Random& random, const std::string& path);

// A mode, a type and a key of a radio that go together.
struct Encryption {
  const char* mode;
  const char* type;
  const char* key;
};
const Encryption& GoodEncryption(Random& random);

// The path of some node of a device.
std::string AnyNode(Random& random);

}  // namespace kio::differential

#endif
