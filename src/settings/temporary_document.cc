// Small documents in the temporary directory, one shell command for each element.
#include "kioapp/settings.h"
#include "platform/command.h"
#include "platform/log.h"
#include "platform/shell_text.h"
#include "platform/store.h"
#include "platform/text.h"

namespace kio::settings {
namespace {

using platform::TextBuffer;
using platform::TextView;

// Room for a command of 255 characters.
constexpr std::size_t kCommandSize = 256;

// Not 0 when the next element begins a new document: what closed the one before.
int g_start_new_file = 1;

}  // namespace
}  // namespace kio::settings

int write_TmpXmlFile(const char* fileName, const char* tag, const char* value, int closing) {
  using kio::settings::g_start_new_file;
  using kio::settings::TextBuffer;
  using kio::settings::TextView;
  if (rssXmlData.tmpPath[0] == '\0') {
    // The node is spelled so (docs/quirks.md).
    kio::platform::ReadStoreText("/zentrolinks/tempdirecory", rssXmlData.tmpPath);
  }
  char line[kio::settings::kCommandSize];
  TextBuffer command(line);
  command.Append("echo '");
  const std::size_t begin = command.size();
  if (g_start_new_file != 0) {
    command.Append("<?xml version=\"1.0\" ?><root>");
  }
  command.Append('<').Append(tag).Append('>').Append(value);
  command.Append("</").Append(tag).Append('>').Append(closing != 0 ? "</root>" : "");
  const std::size_t end = command.size();
  command.Append("' ").Append(g_start_new_file != 0 ? ">" : ">>").Append(' ');
  command.Append(rssXmlData.tmpPath).Append('/').Append(fileName);
  // Quirk "closing-starts-a-new-file": whichever file that was.
  g_start_new_file = closing;

  // What stands inside the quotes stays there. This comes after the cut, so that no cut can fall
  // inside an escape: the command may be longer than 255 characters, as those of the result
  // document may be longer than theirs.
  char quoted_line[kio::settings::kCommandSize * 4];
  TextBuffer quoted(quoted_line);
  quoted.Append(TextView(line, begin));
  kio::platform::AppendShellText(quoted, kio::platform::ShellQuotes::kSingle,
                                 TextView(line + begin, end - begin));
  quoted.Append(TextView(line + end, command.size() - end));
  kio::platform::LogName("write_TmpXmlFile");
  KIO_LOG(kio::platform::kLogDetail, "%s\n", quoted.c_str());
  return kio::platform::RunCommand(quoted.c_str());
}

int write_ResultXmlFile(const char* fileName, const char* tag, const char* value) {
  return write_TmpXmlFile(fileName, tag, value, 1);
}
