// What a router answers, read.
#ifndef CTL_ANSWERS_H
#define CTL_ANSWERS_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "failure.h"
#include "http.h"

namespace kioctl {

// The document of an exchange.
struct ResultDocument {
  int code = 0;
  std::string message;
  int wait_seconds = 0;
};

// The document of a step of a firmware upgrade.
struct FirmwareStatus {
  int result = 0;
  std::string version;
  std::string size;
  int seconds = 0;
};

// They throw a Failure when the text is another one.
ResultDocument ReadResult(const std::string& xml);
FirmwareStatus ReadFirmwareStatus(const std::string& xml);
nlohmann::json ReadJson(const std::string& text);

// What a code of a result document means.
std::string MeaningOf(int code);

nlohmann::json ToJson(const ResultDocument& result);
nlohmann::json ToJson(const FirmwareStatus& status);

// Why the router refuses a request, by the status and body of its answer: a line of text or problem
// details.
Failure Refusal(const Reply& reply);

// Throws that unless the answer is none.
void ThrowUnlessDone(const Reply& reply);

// The same for a document that it answers with 200 and refuses all the same.
Failure RefusalOf(const ResultDocument& result);

}  // namespace kioctl

#endif  // CTL_ANSWERS_H
