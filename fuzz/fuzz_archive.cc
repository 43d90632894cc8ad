// Archives of settings. The input is lines that begin with '/' for nodes of the store, a line of
// flags, and the archive: "m" takes one that the host makes, "h" puts the hash right, "o" takes one
// of another firmware. The
// document of an archive is read by the library.
#include <cstdio>

#include "backup.h"
#include "device.h"
#include "host_store.h"
#include "input.h"
#include "kioapp/kioapp.h"
#include "md5_text.h"
#include "variable_list.h"

namespace {

using kiohost::Json;

const kiohost::Catalogue& TheCatalogue() {
  static const kiohost::Catalogue catalogue = [] {
    kiohost::Catalogue read;
    if (!kiohost::ReadCatalogue(KIO_VARIABLES, &read).ok()) {
      kio::fuzz::Report("no list of variables");
    }
    return read;
  }();
  return catalogue;
}

std::string WithHash(const std::string& archive) {
  Json read = Json::parse(archive, nullptr, false);
  if (!read.is_object() || !read.contains("settings")) {
    return archive;
  }
  read["hash"] = kiohost::Md5Text(kiohost::JsonText(read["settings"]));
  return kiohost::JsonText(read);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static bool has_changed = false;
  kiohost::Store* const store = kio::fuzz::HostStore(has_changed);
  has_changed = false;
  static kiohost::Backup backup(store, TheCatalogue());
  kio::fuzz::Input input(data, size);
  while (input.front() == '/') {
    const std::string line = input.Line();
    const std::size_t equals = line.find('=');
    has_changed = store->Set(line.substr(0, equals),
                             equals == std::string::npos ? "" : line.substr(equals + 1)) ||
                  has_changed;
  }
  const std::string flags = input.Line();
  std::string archive(input.Bytes());
  if (flags.find('m') != std::string::npos) {
    // One that the host made.
    archive = kiohost::JsonText(backup.Make(true));
  }
  if (flags.find('h') != std::string::npos) {
    archive = WithHash(archive);
  }
  std::string document;
  if (!backup.Read(archive, flags.find('o') != std::string::npos, &document).ok()) {
    if (flags.find('m') != std::string::npos) {
      kio::fuzz::Report("the archive of this router does not fit it");
    }
    return 0;
  }
  kio::fuzz::ResetDevice(size);
  const kio::fuzz::GuardedText text(document);
  do_RssXml_Parser(text.get());
  kio::fuzz::CheckRecord();
  return 0;
}
