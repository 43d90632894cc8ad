#include "firmware/exported_data.h"

#include "platform/marked_data.h"

extern "C" {
constinit kio::Marked<FwXmlData> g_own_firmware = {kio::kMark};

extern FwXmlData fwXmlData [[gnu::alias("g_own_firmware")]];

extern void* g_firmware_place __asm__("kio_exported_firmware_data");
constinit void* g_firmware_place = &g_own_firmware;
}

namespace {

void* const kBound = &fwXmlData;

[[gnu::constructor(101)]] void ChooseExportedData() {
  kio::ChooseData(&g_firmware_place, &kBound, 1);
}

}  // namespace
