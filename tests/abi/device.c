#include "device.h"

#include "testing/memory_store.h"
#include "testing/scratch.h"

void StoreDevice(void) {
  StoreFactoryDevice();
  DeleteNode("/lan");
  SetNode("/uplink/configurable", "0");
  SetNode("/zentrolinks/easyroaming", "0");
  SetNode("/zentrolinks/safetyvyr", "0");
  SetNode("/zentrolinks/tempdirecory", ScratchDirectory());
  SetNode("/zentrolinks/scriptdirecory", ScratchDirectory());
}
