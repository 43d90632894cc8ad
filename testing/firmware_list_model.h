// What a firmware list says, read in the plainest way: to compare the library with.
#ifndef KIO_TESTING_FIRMWARE_LIST_MODEL_H
#define KIO_TESTING_FIRMWARE_LIST_MODEL_H

#include <string>

namespace kio::test {

struct ListResult {
  int result = 0;
  std::string file_url;  // when the result is 2
  std::string notes_url;

  bool operator==(const ListResult&) const = default;
};

// `text` ends at its first terminator. The router's texts are those of the store.
ListResult ModelFirmwareList(const std::string& text, const std::string& mac,
                             const std::string& file_name);

}  // namespace kio::test

#endif
