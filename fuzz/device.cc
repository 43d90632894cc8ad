#include "device.h"

#include "input.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"
#include "support/sample_device.h"

namespace kio::fuzz {

void ResetDevice() {
  test::FakeHost::Get().Reset();
  test::StoreSampleDevice();
  test::ClearRecord();
  XmlErrMsg_LostKey = nullptr;
  daemon_log_file_size_k = 0;
  // Every message is formatted; the file is off.
  daemon_log_level = 7;
}

void CheckRecord() {
  if (!test::UnterminatedMembers().empty()) {
    Report("a text of the record has no terminator");
  }
}

}  // namespace kio::fuzz
