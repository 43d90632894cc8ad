/* The host of the programs here: a store in memory, with the sample device of the benchmarks. */
#ifndef KIO_TESTS_TARGET_DEVICE_H
#define KIO_TESTS_TARGET_DEVICE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Puts the device into its factory state. Its files and scripts lie in `directory`. */
void ResetDevice(const char *directory);

/* Writes to the store since then. */
int DeviceWrites(void);

/* The text of a node in a buffer that the next call overwrites; empty when it is absent. */
const char *DeviceText(const char *path);

#ifdef __cplusplus
}
#endif

#endif
