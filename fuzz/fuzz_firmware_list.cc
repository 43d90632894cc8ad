// A firmware list, compared with a plain model. The input is a line with the router's MAC, a line
// with the file name of its firmware, and the list.
#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"
#include "testing/firmware_list_model.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const std::string mac = input.Line();
  const std::string file_name = input.Line();
  const std::string text = input.Rest();
  const kio::fuzz::GuardedText document(text);
  kio::fuzz::ResetDevice(size);
  kio::test::FakeHost& host = kio::test::FakeHost::Get();
  // A host may give the library texts of up to 4095 characters.
  kio::fuzz::ChangeNode("/fwupgradeinfo/devicemac=" + mac.substr(0, 4000));
  kio::fuzz::ChangeNode("/fwupgradeinfo/currfwfilename=" + file_name.substr(0, 4000));
  const kio::fuzz::GuardedBuffer file_url(128);
  const kio::fuzz::GuardedBuffer notes_url(128);
  kio::test::ListResult result;
  result.result = do_FwXml_Parser(document.get(), file_url.get(), notes_url.get());
  result.file_url = file_url.get();
  result.notes_url = notes_url.get();
  if (result != kio::test::ModelFirmwareList(text, mac, file_name)) {
    kio::fuzz::Report("the list reads differently");
  }
  if (host.Text("/fwupgradeinfo/newfw/fileurl").has_value() != (result.result == 2)) {
    kio::fuzz::Report("the store does not hold what was found");
  }
  // The parsers of single lists and entries must stay inside the text as well.
  for (int kind = 0; kind < 4; ++kind) {
    do_FwEntryList_Parser(document.get(), static_cast<int>(text.size() / 2), kind);
  }
  do_FwFirmware_Parser(document.get(), 0);
  return 0;
}
