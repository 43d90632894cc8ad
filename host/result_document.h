// The result document that the library writes for each exchange and each batch.
#ifndef HOST_RESULT_DOCUMENT_H
#define HOST_RESULT_DOCUMENT_H

#include <optional>
#include <string>
#include <string_view>

namespace kiohost {

// Its path in the temporary directory.
inline constexpr char kResultFile[] = "/rssset_result.xml";

struct ExchangeResult {
  int code = 0;
  std::string message;
  int wait_seconds = 0;
};

// The document of a result.
std::string ResultText(const ExchangeResult& result);

// Whether a file holds that document, as the library's shell commands write it. It does not when
// one of the commands failed or wrote only a part.
bool IsWritten(const std::string& file, const ExchangeResult& result);

}  // namespace kiohost

#endif  // HOST_RESULT_DOCUMENT_H
