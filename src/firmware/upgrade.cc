// The steps of a firmware upgrade, and the status document that each of them writes.
#include <fcntl.h>

#include <cstdio>
#include <cstring>

#include "firmware/download.h"
#include "firmware/exported_data.h"
#include "firmware/nodes.h"
#include "kioapp/firmware.h"
#include "kioapp/platform.h"
#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/command.h"
#include "platform/exported_data.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/nodes.h"
#include "platform/shell_text.h"
#include "platform/store.h"
#include "platform/text.h"

namespace kio::firmware {
namespace {

using platform::AppendShellText;
using platform::ShellQuotes;
using platform::TextBuffer;
using platform::TextView;

constexpr const char* kName = "do_FwUpgradeAction";
constexpr const char* kStatusFile = "rsscheckfw.xml";
constexpr const char* kNotesFile = "rssfwnotes.xml";
constexpr const char* kProcessFile = "rssfwtmp.txt";

constexpr std::size_t kPathSize = 128;
constexpr std::size_t kNodeSize = 256;  // what getXNode fills
// How much of a file is read at most.
constexpr std::size_t kReadSize = 4096;

int g_status = KIOAPP_FW_IDLE;
// The beginning of the download's command, as the list of processes shows it.
char g_download_tag[16] = "";

void LogBanner(const char* banner) { KIO_LOG_NAMED(kName, "%s\n", banner); }

void RunLogged(const char* command) {
  KIO_LOG_NAMED(kName, "cmd=%s\n", command);
  platform::RunCommand(command);
}

void WriteElement(const char* tag, const char* value, bool closes = false) {
  write_TmpXmlFile(kStatusFile, tag, value, closes ? 1 : 0);
}

void WriteNumber(const char* tag, int value, bool closes = false) {
  char number[16];
  WriteElement(tag, TextBuffer(number).AppendNumber(value).c_str(), closes);
}

void BuildPath(char (&path)[kPathSize], const char* file) {
  TextBuffer(path).Append(Record().tmpPath).Append('/').Append(file);
}

void ReadImageName(char (&name)[kNodeSize]) {
  getXNode(name, "/fwupgradeinfo/fwupgradefn", "upld.bin");
}

void ReadTemplate(char (&command_template)[kNodeSize]) {
  getXNode(command_template, "/fwupgradeinfo/urlgetcmd", "wget -O \"$savefn\" \"$url\"");
}

// Fetches a file. The buffer of the command is large and takes stack only here.
void Fetch(const char* command_template, const Download& download) {
  char command[kDownloadSize];
  if (BuildDownloadCommand(command_template, download, command)) {
    RunLogged(command);
  }
}

// The beginning of a file, as a text.
class FileText {
 public:
  explicit FileText(const char* path) {
    const platform::FileDescriptor file(platform::OpenFile(path, O_RDONLY));
    ok_ = file.ok();
    std::size_t size = 0;
    std::size_t count = ok_ ? 1 : 0;
    while (count > 0 && size < kReadSize) {
      count = platform::ReadSome(file, text_ + size, kReadSize - size);
      size += count;
    }
    text_[size] = '\0';
  }

  [[nodiscard]] bool ok() const { return ok_; }
  [[nodiscard]] char* text() { return text_; }

 private:
  bool ok_ = false;
  char text_[kReadSize + 1];
};

void Initialise() {
  LogBanner("===FWUPGRADE_ACT_INIT===");
  char image[kNodeSize];
  ReadImageName(image);
  char line[4096];
  TextBuffer command(line);
  command.Append("rm -f");
  for (const char* const file :
       {kStatusFile, static_cast<const char*>(image), kNotesFile, kProcessFile}) {
    command.Append(" \"");
    AppendShellText(command, ShellQuotes::kDouble, Record().tmpPath);
    command.Append('/');
    AppendShellText(command, ShellQuotes::kDouble, file);
    command.Append('"');
  }
  RunLogged(line);
  platform::DeleteStoreNode(kFoundNode);
  g_status = KIOAPP_FW_IDLE;
}

// Out of line, as `FetchList`: its texts take no stack while the list is searched.
[[gnu::noinline]] void FetchNotes() {
  char path[kPathSize];
  BuildPath(path, kNotesFile);
  char address[kPathSize];
  platform::ReadStoreText(kNotesUrlNode, address);
  char command_template[kNodeSize];
  ReadTemplate(command_template);
  Fetch(command_template, {path, address, true});
}

// Fetches the firmware list into `path`.
[[gnu::noinline]] void FetchList(char (&path)[kPathSize]) {
  char model[sizeof(FirmwareData().currFileName)];
  platform::ReadStoreText(kCurrentFileNode, model);
  model[std::strcspn(model, "_")] = '\0';
  platform::ReadStoreText(kio::platform::kTempDirectoryNode, Record().tmpPath);
  TextBuffer(path).Append(Record().tmpPath).Append('/').Append(model).Append(".xml");
  char address[kPathSize];
  TextBuffer(address)
      .Append(get_FwServerWebSite())
      .Append('/')
      .Append(model)
      .Append('/')
      .Append(model)
      .Append(".xml");
  char command_template[kNodeSize];
  ReadTemplate(command_template);
  Fetch(command_template, {path, address, false});
}

// Searches the list in a file and returns the status that follows.
int ReadList(const char* path) {
  // Quirk "lists-of-4096": what stands behind them is not seen.
  FileText list(path);
  const int result =
      list.ok() ? do_FwXml_Parser(list.text(), nullptr, nullptr) : int{KIOAPP_FW_LIST_ERROR};
  if (result == KIOAPP_FW_LIST_ERROR) {
    return KIOAPP_FW_NO_LIST;
  }
  return result == KIOAPP_FW_LIST_MATCH ? KIOAPP_FW_FOUND : KIOAPP_FW_NONE_NEWER;
}

void Search() {
  LogBanner("===FWUPGRADE_ACT_SEARCH===");
  char path[kPathSize];
  FetchList(path);
  g_status = ReadList(path);
  if (g_status == KIOAPP_FW_FOUND) {
    FetchNotes();
  }
}

void FetchImage() {
  LogBanner("===FWUPGRADE_ACT_DOWNLOAD===");
  char image[kNodeSize];
  ReadImageName(image);
  char path[kPathSize];
  BuildPath(path, image);
  char address[kPathSize];
  platform::ReadStoreText(kFileUrlNode, address);
  char command_template[kNodeSize];
  ReadTemplate(command_template);
  trim(command_template);
  const Download download{path, address, true};
  Fetch(command_template, download);
  ReadDownloadTag(command_template, download, g_download_tag);
  g_status = KIOAPP_FW_DOWNLOADING;
}

// Lists the processes that carry the tag into `path`.
void ListDownloads(const char* path) {
  // The tag stands in double quotes inside backquotes. Either of them removes one escape, so the
  // tag is escaped twice.
  char once_text[2 * sizeof(g_download_tag)];
  TextBuffer once(once_text);
  AppendShellText(once, ShellQuotes::kDouble, g_download_tag);
  char line[512];
  TextBuffer command(line);
  command.Append("echo `ps aux |grep \"");
  AppendShellText(command, ShellQuotes::kDouble, once.view());
  command.Append("\"` > \"");
  AppendShellText(command, ShellQuotes::kDouble, path);
  command.Append('"');
  RunLogged(line);
}

// Whether the list of processes shows the download no more.
bool HasEnded(const char* processes) {
  char needle[sizeof(g_download_tag) + 1];
  TextBuffer(needle).Append(' ').Append(g_download_tag);
  KIO_LOG_NAMED(kName, "==BGN=='%s'\n%s\n==END==\n", needle, processes);
  const char* const download = std::strstr(processes, needle);
  const char* const grep = std::strstr(processes, " grep ");
  // Quirk "grep-tells-the-end": the command line of grep is listed and holds the tag as well. The
  // download has ended when nothing before " grep " holds it.
  return download != nullptr && grep != nullptr && grep < download;
}

void CheckProgress() {
  LogBanner("===FWUPGRADE_BINGETTING===");
  char path[kPathSize];
  BuildPath(path, kProcessFile);
  ListDownloads(path);
  FileText processes(path);
  if (processes.ok() && HasEnded(processes.text())) {
    g_status = KIOAPP_FW_DOWNLOADED;
  }
}

void Announce() {
  LogBanner("===FWUPGRADE_ACT_UPGRADE===");
  if (exe_ExternalCall(KIOAPP_SYNC_FW_UPGRADE) != 0) {
    g_status = KIOAPP_FW_NOT_ANNOUNCED;
    return;
  }
  WriteNumber("time", get_ExternalCall_UseSec(KIOAPP_SYNC_FW_UPGRADE));
  g_status = KIOAPP_FW_ANNOUNCED;
}

void RefuseAction(int action) {
  KIO_LOG_NAMED(kName, "===FWUPGRADE_ACT_UNKNOW===,act='%c',%d\n", action, action);
  // Quirk "unknown-action-shows-for-a-moment": the document is replaced before the call returns.
  char text[64];
  text[0] = '\0';
  std::snprintf(text, sizeof(text), "Status=%d, Act=%c", g_status, action);
  WriteElement("erractmsg", text);
  WriteNumber("result", KIOAPP_FW_UNKNOWN_ACTION, true);
  KIO_LOG_NAMED(kName, "rsscheckfw.xml wrong act=%c\n", action);
}

// Quirk "action-goes-with-status": an action that does not fit the status counts as unknown.
void TakeStep(int action) {
  if (action == KIOAPP_FW_INIT) {
    Initialise();
  } else if (g_status == KIOAPP_FW_DOWNLOADING) {
    CheckProgress();
  } else if (action == KIOAPP_FW_SEARCH && g_status == KIOAPP_FW_IDLE) {
    Search();
  } else if (action == KIOAPP_FW_DOWNLOAD && g_status == KIOAPP_FW_FOUND) {
    FetchImage();
  } else if (action == KIOAPP_FW_UPGRADE && g_status == KIOAPP_FW_DOWNLOADED) {
    Announce();
  } else if (action != KIOAPP_FW_REPORT) {
    RefuseAction(action);
  }
}

// The version in the name of the file that was found: the digits and dots behind "_FW".
void WriteVersion() {
  char url[kPathSize];
  platform::ReadStoreText(kFileUrlNode, url);
  url[std::strcspn(url, "?")] = '\0';
  const char* const slash = std::strrchr(url, '/');
  char* version = std::strchr(slash != nullptr ? url + (slash + 1 - url) : url, '_');
  if (version != nullptr && std::strncmp(version, "_FW", 3) == 0) {
    version += 3;
    version[std::strspn(version, "0123456789.")] = '\0';
    WriteElement("fwver", version);
  } else {
    WriteElement("fwver", "");
  }
}

void WriteSize() {
  constexpr float kLargest = 20000000.0F;
  constexpr float kPart = 0.0009765625F;
  constexpr float kNextUnit = 1000.0F;
  char image[kNodeSize];
  ReadImageName(image);
  char path[kPathSize];
  BuildPath(path, image);
  auto size = static_cast<float>(getFileSize(path));
  // Quirk "sizes-up-to-20-million": a larger file is shown as empty, as a missing one is.
  if (size > kLargest) {
    size = 0;
  }
  if (size < kNextUnit) {
    WriteNumber("fwsize", static_cast<int>(size));
    return;
  }
  char text[32];
  const float kilobytes = size * kPart;
  if (kilobytes < kNextUnit) {
    std::snprintf(text, sizeof(text), "%.2f K", static_cast<double>(kilobytes));
  } else {
    std::snprintf(text, sizeof(text), "%.2f M", static_cast<double>(kilobytes * kPart));
  }
  WriteElement("fwsize", text);
}

}  // namespace
}  // namespace kio::firmware

void do_FwUpgradeAction(int action) {
  using namespace kio::firmware;  // NOLINT(google-build-using-namespace)
  kio::platform::LogEntry(kName);
  if (kio::Record().tmpPath[0] == '\0') {
    kio::platform::ReadStoreText(kio::platform::kTempDirectoryNode, kio::Record().tmpPath);
  }
  TakeStep(action);
  if (g_status >= KIOAPP_FW_FOUND) {
    WriteSize();
    WriteVersion();
  }
  WriteNumber("result", g_status, true);
  LogBanner("rsscheckfw.xml done");
}
