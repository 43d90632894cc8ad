#include "scene.h"

#include <stdio.h>
#include <stdlib.h>

#include "testing/memory_store.h"
#include "testing/scratch.h"

void ResetDevice(void) {
  StoreFactoryDevice();
  SetNode("/zentrolinks/tempdirecory", ScratchDirectory());
  SetNode("/zentrolinks/scriptdirecory", ScratchDirectory());
}

const char *DeviceText(const char *path) {
  const char *const text = NodeText(path);
  return text != NULL ? text : "";
}

char *FullDocument(void) {
  static char text[16384];
  FILE *const file = fopen(KIO_SAMPLE_DOCUMENTS "/full.xml", "rb");
  if (file == NULL) {
    perror(KIO_SAMPLE_DOCUMENTS "/full.xml");
    exit(2);
  }
  text[fread(text, 1, sizeof(text) - 1, file)] = '\0';
  fclose(file);
  return text;
}
