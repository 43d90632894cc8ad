// A store with any texts. The input is lines: "path=text" sets a node of the sample device, "path"
// deletes one. Then the record is loaded from the store, verified and applied.
#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  kio::fuzz::ResetDevice(size);
  kio::fuzz::ChangeNodes(&input);
  for (const int full : {0, 1}) {
    restore_XmlRssStatus(full);
    kio::fuzz::CheckRecord();
  }
  if (Verify_RssXml() == 1) {
    Apply_RssXmlToDevice();
    calc_RssExeFlag();
  }
  dump_RssXmlData();
  kio::fuzz::CheckRecord();
  do_RssXml_Commit();
  char node[256];
  getXNode_(node, "/sys/friendlyname", "default", 1);
  return 0;
}
