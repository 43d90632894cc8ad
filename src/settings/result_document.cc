// The result document "rssset_result.xml", written by six shell commands.

#include "kioapp/settings.h"
#include "platform/command.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/text.h"
#include "settings/echo.h"
#include "settings/xml/element_path.h"

namespace kio::settings {
namespace {

using platform::TextBuffer;

// Quirk "commands-of-127": with a long directory a command loses its end.
constexpr std::size_t kCommandSize = 128;

// Quirk "echo-interprets-backslashes": backslashes in the message are left to the shell.
int Echo(const char* path, const char* redirection, const char* before, const char* message = "",
         const char* after = "") {
  EchoCommand<kCommandSize> echo;
  echo.text().Append(before).Append(message).Append(after);
  return platform::RunCommand(echo.To(redirection, path, ""));
}

int WriteResultDocument(const char* path, int code, const char* message, int wait_seconds) {
  char code_text[16];
  TextBuffer(code_text).AppendNumber(code);
  char wait_text[16];
  TextBuffer(wait_text).AppendNumber(wait_seconds);
  Echo(path, ">", "<?xml version=\"1.0\" ?>");
  Echo(path, ">>", "<root>");
  Echo(path, ">>", " <RssSetResult>", code_text, "</RssSetResult>");
  // Quirk "message-is-not-encoded": the message stands in the document as it is.
  Echo(path, ">>", " <RssSetMsg>", message, "</RssSetMsg>");
  Echo(path, ">>", " <RssGetWaitSec>", wait_text, "</RssGetWaitSec>");
  return Echo(path, ">>", "</root>");
}

}  // namespace
}  // namespace kio::settings

int write_RssXml_ResultXml(int code, const char* message, int waitSec) {
  message = kio::platform::TextOf(message);
  kio::Record().setResult = code;
  if (message != kio::Record().setMsg) {
    kio::platform::CopyText(kio::Record().setMsg, message);
  }
  char path[128];
  kio::platform::TextBuffer(path).Append(kio::Record().tmpPath).Append("/rssset_result.xml");
  KIO_LOG(kio::platform::kLogEvent, "Rss SetResult=%d, SetMsg='%s', GetWaitSec=%d\n", code, message,
          waitSec);
  return kio::settings::WriteResultDocument(path, code, message, waitSec);
}

void write_RssXml_KeyResult(const char* path, const char* key, int code) {
  char message[128];
  kio::settings::JoinPath(message, path, kio::platform::ViewOf(key));
  write_RssXml_ResultXml(code, message, 0);
}

void write_RssXml_VerifyError(const char* path, const char* key) {
  write_RssXml_KeyResult(path, key, KIOAPP_RESULT_INVALID_VALUE);
}

void write_RssXml_LostKeyError(const char* path, const char* key) {
  write_RssXml_KeyResult(path, key, KIOAPP_RESULT_MISSING_ELEMENT);
}
