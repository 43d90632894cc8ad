// The data that the room exports, as its own code reaches it; platform/exported_data.h tells why.
#ifndef KIO_FIRMWARE_EXPORTED_DATA_H
#define KIO_FIRMWARE_EXPORTED_DATA_H

#include "kioapp/firmware.h"

namespace kio {

[[gnu::visibility("hidden")]] extern void* const kExportedFirmwareData __asm__(
    "kio_exported_firmware_data");

inline FwXmlData& FirmwareData() { return *static_cast<FwXmlData*>(kExportedFirmwareData); }

}  // namespace kio

#endif
