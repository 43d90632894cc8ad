#include "result_document.h"

#include <fstream>
#include <sstream>

namespace kiohost {
namespace {

// The document before and behind the message.
std::string Head(const ExchangeResult& result) {
  return "<?xml version=\"1.0\" ?>\n<root>\n <RssSetResult>" + std::to_string(result.code) +
         "</RssSetResult>\n <RssSetMsg>";
}

constexpr std::string_view kMessageEnd = "</RssSetMsg>\n";

std::string Tail(const ExchangeResult& result) {
  return " <RssGetWaitSec>" + std::to_string(result.wait_seconds) + "</RssGetWaitSec>\n</root>\n";
}

std::optional<std::string> ReadFile(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return std::nullopt;
  }
  return text.str();
}

}  // namespace

std::string ResultText(const ExchangeResult& result) {
  return Head(result) + result.message + std::string(kMessageEnd) + Tail(result);
}

bool IsWritten(const std::string& file, const ExchangeResult& result) {
  const std::optional<std::string> written = ReadFile(file);
  if (!written) {
    return false;
  }
  if (result.message.find('\\') == std::string::npos) {
    return *written == ResultText(result);
  }
  // Shells differ in what their echo makes of a backslash; it may even end the line.
  const std::string head = Head(result);
  const std::string tail = Tail(result);
  return written->size() >= head.size() + tail.size() && written->starts_with(head) &&
         written->ends_with(tail);
}

}  // namespace kiohost
