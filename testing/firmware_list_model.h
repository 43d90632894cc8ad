// A plain model of do_FwXml_Parser, which the library is compared with.
#ifndef KIO_TESTING_FIRMWARE_LIST_MODEL_H
#define KIO_TESTING_FIRMWARE_LIST_MODEL_H

#include <string>

namespace kio::test {

struct ListResult {
  int result = 0;        // KIOAPP_FW_LIST_..., see kioapp/firmware.h
  std::string file_url;  // both addresses: when an entry fits
  std::string notes_url;

  bool operator==(const ListResult&) const = default;
};

// `text` ends at its first terminator. `mac` and `file_name` are the router's own, as in the store.
ListResult ModelFirmwareList(const std::string& text, const std::string& mac,
                             const std::string& file_name);

}  // namespace kio::test

#endif
