/* The device of the test programs in C. */
#ifndef KIO_TESTS_ABI_DEVICE_H
#define KIO_TESTS_ABI_DEVICE_H

/* The sample device without what a short document need not name: it has no radios, and the app may
 * not change its uplink. Its result document and its scripts lie in the scratch directory. */
void StoreDevice(void);

#endif
