// The file of the host's store. The input is the file. A store that opens is listed, read and
// written.
#include "input.h"
#include "memory_vfs.h"
#include "store.h"

namespace {

void Use(kiohost::Store* store) {
  for (const kiohost::Node& node : store->List()) {
    // Another spelling of the path may stand in the file, but never none.
    store->Get(node.path);
  }
  store->Get("/lan/wireless5:1/accesscontrol/acrule#");
  store->Read();
  store->DueActions();
  if (store->Begin().ok()) {
    store->Set("/sys/friendlyname", "name");
    store->KeepOldText("/sys/notice", std::nullopt);
    store->PutBackOldTexts();
    store->ForgetOldTexts();
    store->SetNumber("number", 1);
    store->Delete("/lan");
    // In a damaged file it may fail, or be something else than was written.
    static_cast<void>(store->Commit());
  }
  store->Get("/sys/friendlyname");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& files = kio::fuzz::MemoryFiles();
  files.clear();
  files["store"] = std::string(reinterpret_cast<const char*>(data), size);
  {
    kiohost::Store store;
    if (store.Open("store", kiohost::Store::Mode::kExisting).ok()) {
      Use(&store);
    }
  }
  return 0;
}
