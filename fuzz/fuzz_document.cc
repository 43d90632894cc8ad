// A whole exchange. The input is a line with the mode, and the settings document. The mode is "1.0"
// for a device of the older dialect, "clone" for the settings of another access point, anything
// else for neither.
#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"
#include "support/sample_device.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const std::string mode = input.Line();
  const kio::fuzz::GuardedText document(input.Rest());
  kio::fuzz::ResetDevice();
  if (mode == "1.0") {
    kio::test::StoreVersion10Device();
  }
  const int result = mode == "clone" ? do_RssXml_Parser_for_ApCloning(document.get())
                                     : do_RssXml_Parser(document.get());
  kio::fuzz::CheckRecord();
  if (result == 1 && rssXmlData.setResult != KIOAPP_RESULT_APPLIED) {
    kio::fuzz::Report("accepted with a result code");
  }
  do_RssXml_Commit();
  return 0;
}
