// The result document "rssset_result.xml", written by six shell commands.

#include "kioapp/settings.h"
#include "platform/command.h"
#include "platform/log.h"
#include "platform/shell_text.h"
#include "platform/text.h"
#include "settings/element_path.h"

namespace kio::settings {
namespace {

using platform::RunCommand;
using platform::TextBuffer;
using platform::TextView;

// Quirk "commands-of-127": with a long directory a command loses its end.
constexpr std::size_t kCommandSize = 128;

// echo 'BEFORE MESSAGE AFTER' REDIRECTION PATH, cut to 127 characters.
int Echo(TextView before, TextView message, TextView after, TextView redirection, TextView path) {
  char line[kCommandSize];
  TextBuffer command(line);
  command.Append("echo '").Append(before);
  const std::size_t begin = command.size();
  command.Append(message);
  const std::size_t end = command.size();
  command.Append(after).Append("' ").Append(redirection).Append(' ').Append(path);
  // A client may choose the message: each quote in it is taken out of the shell's quotes and put
  // back escaped. This comes after the cut, so that no cut can fall inside an escape.
  // Quirk "quotes-escaped-after-the-cut": the command may be longer than 127 characters.
  char quoted_line[kCommandSize * 4];
  TextBuffer quoted(quoted_line);
  quoted.Append(TextView(line, begin));
  // Quirk "echo-interprets-backslashes": those in the message are left to the shell.
  platform::AppendShellText(quoted, platform::ShellQuotes::kSingle,
                            TextView(line + begin, end - begin));
  quoted.Append(TextView(line + end, command.size() - end));
  return RunCommand(quoted.c_str());
}

int WriteResultDocument(TextView path, int code, TextView message, int wait_seconds) {
  char number[16];
  TextBuffer code_text(number);
  code_text.AppendNumber(code);
  char wait_number[16];
  TextBuffer wait_text(wait_number);
  wait_text.AppendNumber(wait_seconds);
  Echo("<?xml version=\"1.0\" ?>", "", "", ">", path);
  Echo("<root>", "", "", ">>", path);
  Echo(" <RssSetResult>", code_text.view(), "</RssSetResult>", ">>", path);
  // Quirk "message-is-not-encoded": it stands in the document as it is.
  Echo(" <RssSetMsg>", message, "</RssSetMsg>", ">>", path);
  Echo(" <RssGetWaitSec>", wait_text.view(), "</RssGetWaitSec>", ">>", path);
  return Echo("</root>", "", "", ">>", path);
}

}  // namespace
}  // namespace kio::settings

int write_RssXml_ResultXml(int code, const char* message, int waitSec) {
  rssXmlData.setResult = code;
  if (message != rssXmlData.setMsg) {
    kio::platform::CopyText(rssXmlData.setMsg, message);
  }
  char path[128];
  kio::platform::TextBuffer(path).Append(rssXmlData.tmpPath).Append("/rssset_result.xml");
  KIO_LOG(kio::platform::kLogEvent, "Rss SetResult=%d, SetMsg='%s', GetWaitSec=%d\n", code, message,
          waitSec);
  return kio::settings::WriteResultDocument(path, code, message, waitSec);
}

void write_RssXml_KeyResult(const char* path, const char* key, int code) {
  char message[128];
  kio::settings::JoinPath(message, path, key);
  write_RssXml_ResultXml(code, message, 0);
}

void write_RssXml_VerifyError(const char* path, const char* key) {
  write_RssXml_KeyResult(path, key, KIOAPP_RESULT_INVALID_VALUE);
}

void write_RssXml_LostKeyError(const char* path, const char* key) {
  write_RssXml_KeyResult(path, key, KIOAPP_RESULT_MISSING_ELEMENT);
}
