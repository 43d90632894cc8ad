#include "firmware.h"

#include <kioapp/firmware.h>
#include <kioapp/platform.h>
#include <kioapp/xml.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "actions.h"
#include "nodes.h"

namespace kiohost {
namespace {

constexpr char kImageNameNode[] = "/fwupgradeinfo/fwupgradefn";
constexpr char kFileUrlNode[] = "/fwupgradeinfo/newfw/fileurl";
constexpr char kTemplateNode[] = "/fwupgradeinfo/urlgetcmd";

std::optional<std::string> ReadFile(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return std::nullopt;
  }
  return text.str();
}

// The file name at the end of an address, without the query.
std::string FileName(const std::string& address) {
  const std::string path(address.begin(), std::ranges::find(address, '?'));
  return std::filesystem::path(path).filename();
}

// The beginning of the template, up to its first keyword, quote or backslash. Every download
// command begins with it.
std::string PlainBeginning(const std::string& command_template) {
  constexpr size_t kReadOfTemplate = 255;
  return command_template.substr(
      0, std::min(command_template.find_first_of("$\"'\\"), kReadOfTemplate));
}

// What a step is called in events; empty for what is none.
const char* StepWord(unsigned char action) {
  switch (action) {
    case KIOAPP_FW_INIT:
      return "start";
    case KIOAPP_FW_SEARCH:
      return "search";
    case KIOAPP_FW_DOWNLOAD:
      return "download";
    case KIOAPP_FW_UPGRADE:
      return "announce";
    case KIOAPP_FW_REPORT:
      return "report";
    default:
      return "";
  }
}

// The text of an element of a status document, empty without it.
std::string ElementOf(const std::string& document, const std::string& name) {
  const std::string tag = "<" + name + ">";
  const size_t begin = document.find(tag);
  const size_t end = begin == document.npos ? document.npos : document.find("</", begin);
  return end == document.npos ? "" : document.substr(begin + tag.size(), end - begin - tag.size());
}

}  // namespace

Firmware::Outcome Firmware::Act(unsigned char action) {
  const bool searches = action == KIOAPP_FW_SEARCH && last_result_ == KIOAPP_FW_IDLE;
  if (searches) {
    events_->Add({EventKind::kFirmware, {{"step", StepWord(action)}, {"result", nullptr}}});
  }
  // The document and the commands of the step before must not be taken for this step's.
  unlink(status_file_.c_str());
  TakeCommandResults();
  do_FwUpgradeAction(action);
  Outcome outcome;
  outcome.document = ReadFile(status_file_);
  last_status_ = outcome.document;
  if (outcome.document) {
    std::string text = *outcome.document;
    // Only the step that announces the upgrade writes a time.
    outcome.announced = GetXmlKeyIntValue_(text.data(), 0, "time", &outcome.wait_seconds) == 1;
    GetXmlKeyIntValue_(text.data(), 0, "result", &last_result_);
  }
  const bool failed = searches && last_result_ == KIOAPP_FW_NO_LIST;
  TellStep(action, failed ? WhySearchFailed(TakeCommandResults()) : std::string());
  return outcome;
}

// Tells of a step. Many reports in a row are alike: then the first is told.
void Firmware::TellStep(unsigned char action, const std::string& failure) {
  Json about = {{"step", StepWord(action)}, {"result", last_result_}};
  for (const auto& [member, element] :
       {std::pair("version", "fwver"), std::pair("size", "fwsize")}) {
    if (const std::string text = ElementOf(last_status_.value_or(""), element); !text.empty()) {
      about[member] = text;
    }
  }
  Json state = about;
  state.erase("step");
  const bool is_new = std::exchange(last_told_, state) != state;
  if (*StepWord(action) != '\0' && (is_new || action != KIOAPP_FW_REPORT)) {
    events_->Add({EventKind::kFirmware, about, failure});
  }
}

// Why a search failed: the library only says that there was no list.
std::string Firmware::WhySearchFailed(const std::vector<CommandResult>& results) {
  const std::string beginning = PlainBeginning(store_->Get(kTemplateNode).value_or(""));
  const auto download = std::find_if(
      results.begin(), results.end(),
      [&beginning](const auto& result) { return result.command.starts_with(beginning); });
  std::string reason = "the list is not valid";
  if (download == results.end()) {
    reason = "the download command is too long";
  } else if (!download->ok()) {
    reason = "the download command failed: " + DescribeStatus(*download);
  }
  return "firmware search failed: " + reason;
}

std::string Firmware::DownloadBeginning() const {
  // The library's own template, when the store has none.
  constexpr char kDefaultTemplate[] = "wget -O ";
  return PlainBeginning(store_->Get(kTemplateNode).value_or(kDefaultTemplate));
}

std::string Firmware::ImageFile() const {
  return temp_dir_ + "/" + store_->Get(kImageNameNode).value_or("upld.bin");
}

Firmware::State Firmware::Save() const {
  return {last_status_, last_result_, fwXmlData, ReadFile(partition_)};
}

bool Firmware::CanRestore(const State& state) const {
  return state.step == last_result_ || state.step == KIOAPP_FW_IDLE;
}

Status Firmware::Restore(const State& state) {
  if (state.step != last_result_) {
    Act(KIOAPP_FW_INIT);
  }
  last_status_ = state.last_status;
  last_result_ = state.step;
  fwXmlData = state.found;
  if (state.partition == ReadFile(partition_)) {
    return {};
  }
  std::error_code error;
  if (!state.partition) {
    std::filesystem::remove(partition_, error);
    return {};
  }
  const std::string written = partition_ + ".new";
  std::ofstream(written, std::ios::binary) << *state.partition;
  if (ReadFile(written) == state.partition) {
    std::filesystem::rename(written, partition_, error);
    return {};
  }
  return {ExitCode::kDirectory, "the partition " + partition_ + " could not be written"};
}

// Notes why a file is no image.
bool Firmware::Refuse(const std::string& file) {
  constexpr size_t kRoom = 64;
  std::string message(file.size() + kRoom, '\0');
  if (check(file.c_str(), 0, getFileSize(file.c_str()), message.data()) == 1) {
    return false;
  }
  message.resize(message.find('\0'));
  while (!message.empty() && message.back() == '\n') {
    message.pop_back();
  }
  TellWriting(false, "firmware refused: " + message);
  return true;
}

void Firmware::TellWriting(bool ok, const std::string& text) {
  events_->Add({EventKind::kFirmware, {{"step", "write"}, {"ok", ok}}, text});
}

void Firmware::WriteImage() {
  ActionReport(KIOAPP_SYNC_FW_UPGRADE, events_).Finish();
  const std::string image = ImageFile();
  const std::string written = partition_ + ".new";
  if (Refuse(image)) {
    return;
  }
  std::error_code error;
  std::filesystem::copy_file(image, written, std::filesystem::copy_options::overwrite_existing,
                             error);
  // The written image is read back and checked: the file may have changed since the first check.
  if (!error && Refuse(written)) {
    unlink(written.c_str());
    return;
  }
  if (!error) {
    std::filesystem::rename(written, partition_, error);
  }
  if (error) {
    TellWriting(false, "firmware not written: " + partition_ + ": " + error.message());
    return;
  }
  const std::string name = FileName(store_->Get(kFileUrlNode).value_or(""));
  const bool named = store_->Set(kFirmwareNode, name);
  TellWriting(true, "firmware written: " + name + ", " +
                        std::to_string(getFileSize(partition_.c_str())) + " bytes" +
                        (named ? "" : "; the store could not be written and names the one before"));
}

}  // namespace kiohost
