#include "control/firmware_faults.h"

#include <cstdint>
#include <fstream>
#include <string_view>

#include "nodes.h"

namespace kiohost {
namespace {

constexpr std::string_view kBackground = " &";

std::string InQuotes(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) {
    quoted += character == '\'' ? "'\\''" : std::string(1, character);
  }
  return quoted + "'";
}

// The statuses are those of wget: for a server that says no, and for a connection that broke.
std::string Missing(const std::string& file) { return ": >" + file + "; exit 8"; }

std::string Stopped(const std::string& command, const std::string& file, int64_t bytes) {
  return command + "; head -c " + std::to_string(bytes) + " " + file + " >" + file +
         ".part && mv " + file + ".part " + file + "; exit 4";
}

// Turns each bit of a byte: that in the middle, unless the rule says which.
std::string Changed(const std::string& command, const std::string& file, const Json& rule) {
  const std::string at = rule.contains("at") ? std::to_string(rule["at"].get<int64_t>())
                                             : "$(($(wc -c <" + file + ") / 2))";
  return command + "; at=" + at + "; byte=$(od -An -tu1 -j $at -N 1 " + file +
         "); [ -z \"$byte\" ] || printf \"\\\\$(printf %03o $((255 - byte)))\" | dd of=" + file +
         " bs=1 seek=$at conv=notrunc 2>/dev/null";
}

}  // namespace

std::optional<FirmwareFaults::Download> FirmwareFaults::Recognise(
    const std::string& command) const {
  if (!command.starts_with(firmware_->DownloadBeginning())) {
    return std::nullopt;
  }
  const std::string current = store_->Get(kFirmwareNode).value_or("");
  const std::string list = temp_dir_ + "/" + current.substr(0, current.find('_')) + ".xml";
  for (const auto& [what, file] :
       {std::pair("list", list), std::pair("image", firmware_->ImageFile()),
        std::pair("notes", temp_dir_ + "/rssfwnotes.xml")}) {
    if (command.find(file) != std::string::npos) {
      Download download = {what, file, command, command.ends_with(kBackground)};
      if (download.in_background) {
        download.command.resize(command.size() - kBackground.size());
      }
      return download;
    }
  }
  return std::nullopt;
}

void FirmwareFaults::AddKinds(const Download& download, std::vector<FaultKind>* kinds) {
  kinds->insert(kinds->end(), {FaultKind::kFirmwareMissing, FaultKind::kFirmwareStops});
  const std::string_view what = download.what;
  if (what == "image") {
    kinds->push_back(FaultKind::kFirmwareChanged);
  } else if (what == "list") {
    kinds->push_back(FaultKind::kFirmwareList);
  }
}

FaultPoints::Command FirmwareFaults::Spoil(const Download& download, FaultKind kind,
                                           const Json& rule) {
  if (kind == FaultKind::kFirmwareList) {
    std::ofstream(download.file, std::ios::binary) << rule["text"].get<std::string>();
    return {0, {}};
  }
  const std::string file = InQuotes(download.file);
  std::string instead;
  if (kind == FaultKind::kFirmwareMissing) {
    instead = Missing(file);
  } else if (kind == FaultKind::kFirmwareStops) {
    instead = Stopped(download.command, file, rule["bytes"].get<int64_t>());
  } else {
    instead = Changed(download.command, file, rule);
  }
  return {std::nullopt,
          download.in_background ? "( " + instead + " )" + std::string(kBackground) : instead};
}

}  // namespace kiohost
