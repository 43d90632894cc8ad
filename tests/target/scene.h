/* What the programs here have in common: the sample device and the document that changes it. */
#ifndef KIO_TESTS_TARGET_SCENE_H
#define KIO_TESTS_TARGET_SCENE_H

/* Puts the device into its factory state. Its files and scripts lie in the scratch directory. */
void ResetDevice(void);

/* The text of a node until the store changes; empty when it is absent. */
const char *DeviceText(const char *path);

/* The full document, as it is in the file, in a buffer that the library may change. */
char *FullDocument(void);

#endif
