// Small documents in the temporary directory, one shell command for each element.
#include "kioapp/settings.h"
#include "platform/command.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/nodes.h"
#include "platform/store.h"
#include "platform/text.h"
#include "settings/echo.h"

namespace kio::settings {
namespace {

using platform::TextBuffer;

// Room for a command of 255 characters.
constexpr std::size_t kCommandSize = 256;

// Not 0 when the next element begins a new document. It is the `closing` of the call before.
int g_start_new_file = 1;

}  // namespace
}  // namespace kio::settings

int write_TmpXmlFile(const char* fileName, const char* tag, const char* value, int closing) {
  using kio::platform::TextOf;
  using kio::settings::g_start_new_file;
  using kio::settings::TextBuffer;
  if (kio::Record().tmpPath[0] == '\0') {
    kio::platform::ReadStoreText(kio::platform::kTempDirectoryNode, kio::Record().tmpPath);
  }
  kio::settings::EchoCommand<kio::settings::kCommandSize> echo;
  TextBuffer& text = echo.text();
  const char* const redirection = g_start_new_file != 0 ? ">" : ">>";
  if (g_start_new_file != 0) {
    text.Append("<?xml version=\"1.0\" ?><root>");
  }
  text.Append('<').Append(TextOf(tag)).Append('>').Append(TextOf(value));
  text.Append("</").Append(TextOf(tag)).Append('>').Append(closing != 0 ? "</root>" : "");
  // Quirk "closing-starts-a-new-file": the next call begins a new document, whatever file it
  // names.
  g_start_new_file = closing;

  char path[sizeof(kio::Record().tmpPath) + 1];
  TextBuffer(path).Append(kio::Record().tmpPath).Append('/');
  const char* const command = echo.To(redirection, path, TextOf(fileName));
  KIO_LOG_NAMED("write_TmpXmlFile", "%s\n", command);
  return kio::platform::RunCommand(command);
}

int write_ResultXmlFile(const char* fileName, const char* tag, const char* value) {
  return write_TmpXmlFile(fileName, tag, value, 1);
}
