// A whole exchange. The input is a line with the mode, lines that begin with '/' for nodes of the
// store, and the settings document. The mode is "1.0" for a device of the older dialect, "clone"
// for the settings of another access point, anything else for neither. A node is set by "path=text"
// and deleted by "path".
#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const std::string mode = input.Line();
  kio::fuzz::ResetDevice(size);
  if (mode == "1.0") {
    kio::fuzz::ChangeNode("/zentrolinks/specversion/minor=0");
  }
  kio::fuzz::ChangeNodes(&input);
  const kio::fuzz::GuardedText document(input.Rest());
  const int result = mode == "clone" ? do_RssXml_Parser_for_ApCloning(document.get())
                                     : do_RssXml_Parser(document.get());
  kio::fuzz::CheckRecord();
  if (result == 1 && rssXmlData.setResult != KIOAPP_RESULT_APPLIED) {
    kio::fuzz::Report("accepted with a result code");
  }
  do_RssXml_Commit();
  return 0;
}
