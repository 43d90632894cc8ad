// Records of sessions, as kiohost --record writes them.
#ifndef CTL_RECORD_H
#define CTL_RECORD_H

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "http.h"

namespace kioctl {

struct RecordedRequest {
  size_t number = 0;
  long milliseconds = 0;  // since the record began
  std::string from;       // the address of the client
  long connection = 0;
  std::string method;
  std::string target;
  std::vector<std::string> headers;
  std::string body;
  size_t bytes = 0;  // of a body that the host did not keep
  bool is_malformed = false;
  std::optional<std::string> password;  // of a login: the mark of the password
  Reply answer;
  bool has_stream = false;  // the answer went on: its body was not recorded
};

// Throws a Failure that names the line at fault.
std::vector<RecordedRequest> ReadRecord(const std::string& text);

// What stands in a record for its passwords and keys: "********(1)" and so on.
class Secrets {
 public:
  // `file` is what kiohost --record-secrets has written, empty for none. `password` gives the text
  // of the first mark, the administrator's password, when the file has none.
  Secrets(const std::string& file, std::function<std::string()> password);

  // A text with its secrets put back, each in the form that `form` gives it. Throws a Failure when
  // one is not known.
  std::string PutBack(const std::string& text,
                      const std::function<std::string(const std::string&)>& form = {});

 private:
  const std::string& TextOf(const std::string& mark);

  std::map<std::string, std::string> texts_;
  std::function<std::string()> password_;
};

// The place and the length of the first mark in a text, from a place on; nothing without one.
struct FoundMark {
  size_t begin = 0;
  size_t length = 0;
};
std::optional<FoundMark> FindMark(const std::string& text, size_t from);

}  // namespace kioctl

#endif  // CTL_RECORD_H
