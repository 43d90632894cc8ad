// The record of a session: each request to the router's port with its answer (docs/record.md).
#ifndef HOST_RECORD_RECORDER_H
#define HOST_RECORD_RECORDER_H

#include <chrono>
#include <cstdint>
#include <string>

#include "http_request.h"
#include "json.h"
#include "record/line_file.h"
#include "record/secret_marks.h"
#include "reply.h"
#include "status.h"
#include "store.h"

namespace kiohost {

// Belongs to the thread of the sockets, but for `Open`.
class Recorder {
 public:
  // `reader` is the store, for the thread of the sockets; `variables` the list of all variables.
  Recorder(Store* reader, const Json& variables);

  // Makes the record, and the file of its secrets if that has a name. To be called first.
  Status Open(const std::string& file, const std::string& secrets_file);

  // Adds a request that is about to be answered.
  void Add(const HttpRequest& request, const Reply& reply);

 private:
  // Texts that stand in the store have a mark wherever they appear.
  void LearnSecrets();
  Json RequestOf(const HttpRequest& request, const Reply& reply);
  Json AnswerOf(const HttpRequest& request, const Reply& reply, long milliseconds);

  Store* reader_;
  SecretMarks marks_;
  LineFile file_;
  LineFile secrets_;
  uint64_t count_ = 0;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace kiohost

#endif  // HOST_RECORD_RECORDER_H
