// A host that takes next to no stack and no heap, so that what a measurement finds is the
// library's.
#ifndef KIO_TESTS_BUDGET_FLAT_HOST_H
#define KIO_TESTS_BUDGET_FLAT_HOST_H

namespace kio::test {

// Brings the store into the factory state of the sample device.
void ResetFlatHost();

// Number of writes since then.
int FlatHostWrites();

}  // namespace kio::test

#endif
