#include "device.h"

#include "flat_host.h"
#include "kioapp/store.h"

namespace {

int g_writes_of_reset = 0;

}  // namespace

void ResetDevice(const char* directory) {
  kio::test::ResetFlatHost();
  xset_str(directory, "%s", "/zentrolinks/tempdirecory");
  xset_str(directory, "%s", "/zentrolinks/scriptdirecory");
  g_writes_of_reset = kio::test::FlatHostWrites();
}

int DeviceWrites() { return kio::test::FlatHostWrites() - g_writes_of_reset; }

const char* DeviceText(const char* path) {
  static char text[160];
  text[0] = '\0';
  xget_str(text, "%s", path);
  return text;
}
