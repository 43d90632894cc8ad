// A store with any texts. The input is lines: "path=text" sets a node of the sample device, "path"
// deletes one. Then the record is loaded from the store, verified and applied.
#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The library offers the store 4096 bytes for a text.
  constexpr std::size_t kLongestText = 4095;
  constexpr int kMostLines = 400;
  kio::fuzz::Input input(data, size);
  kio::fuzz::ResetDevice();
  for (int i = 0; i < kMostLines; ++i) {
    const std::string line = input.Line();
    if (line.empty()) {
      break;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) {
      kio::test::FakeHost::Get().Delete(line);
    } else {
      kio::test::FakeHost::Get().Set(line.substr(0, equals), line.substr(equals + 1, kLongestText));
    }
  }
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
