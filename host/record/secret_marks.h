// What stands in a record in the place of passwords and keys: "********(1)", "********(2)" and so
// on, a number for each text.
#ifndef HOST_RECORD_SECRET_MARKS_H
#define HOST_RECORD_SECRET_MARKS_H

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json.h"

namespace kiohost {

class SecretMarks {
 public:
  // `variables` is the list of all variables: it tells the names of elements with secrets.
  explicit SecretMarks(const Json& variables);

  // What is called with each new mark and its text. May be empty.
  void set_on_new(std::function<void(const std::string& mark, const std::string& text)> on_new) {
    on_new_ = std::move(on_new);
  }

  // The mark of a secret, which gets one if it has none. An empty text has none.
  std::string MarkOf(const std::string& text);

  // Whether a variable is a secret, by its name or its path in documents.
  bool IsSecretName(std::string_view name) const;

  // A text with marks in the places of the secrets that are known. Short ones are left: they stand
  // in too many other texts.
  std::string Masked(std::string text) const;

  // The same of a body. What stands in a place for a secret becomes known by that: in a document,
  // in JSON, or in a batch with this character between its variables.
  std::string MaskedBody(std::string body, char separator);

 private:
  std::string MaskXml(std::string body);
  std::string MaskJson(const std::string& body);
  std::string MaskBatch(const std::string& body, char separator);

  std::vector<std::string> names_;            // of elements, in lower case
  std::map<std::string, std::string> marks_;  // by their texts
  std::vector<std::string> longest_first_;    // the texts that are looked for anywhere
  std::function<void(const std::string& mark, const std::string& text)> on_new_;
};

}  // namespace kiohost

#endif  // HOST_RECORD_SECRET_MARKS_H
