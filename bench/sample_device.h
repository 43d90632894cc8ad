// The device that the sample documents in data/ are meant for: a dual-band router in its factory
// state.
#ifndef KIO_BENCH_SAMPLE_DEVICE_H
#define KIO_BENCH_SAMPLE_DEVICE_H

namespace kio::bench {

// Puts the device's nodes into the store in memory, in place of all that it holds.
void StoreFactoryDevice();

}  // namespace kio::bench

#endif
