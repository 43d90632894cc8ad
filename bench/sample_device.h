// The device that the sample documents in data/ are meant for: a dual-band router in its factory
// state.
#ifndef KIO_BENCH_SAMPLE_DEVICE_H
#define KIO_BENCH_SAMPLE_DEVICE_H

#include <span>

namespace kio::bench {

struct DeviceNode {
  const char* path;
  const char* value;
};

// The nodes of its store.
std::span<const DeviceNode> FactoryNodes();

}  // namespace kio::bench

#endif
