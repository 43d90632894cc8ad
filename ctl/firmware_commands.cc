// The steps of a firmware upgrade.
#include <array>

#include "applied.h"
#include "commands.h"
#include "interrupt.h"
#include "wait.h"

namespace kioctl {
namespace {

using nlohmann::json;

enum FirmwareResult {
  kIdle = 0,
  kNoneNewer = 1,
  kFound = 2,
  kDownloading = 3,
  kDownloaded = 4,
  kAnnounced = 5,
  kNoList = -1,
};

// The router fetches the list itself, and gives up after 300 seconds.
constexpr long kSearchSeconds = 330;

std::string MeaningOfStep(int result) {
  constexpr std::array kMeanings = {"nothing was done yet",    "there is no newer firmware",
                                    "there is newer firmware", "the image is being fetched",
                                    "the image was fetched",   "the upgrade was announced"};
  if (result >= 0 && static_cast<size_t>(result) < kMeanings.size()) {
    return kMeanings.at(static_cast<size_t>(result));
  }
  return result == kNoList ? "the firmware list could not be fetched, or is not valid"
                           : "the upgrade could not be announced";
}

FirmwareStatus Step(Context* context, char action) {
  Request request{.method = "POST",
                  .path = std::string("/firmware/") + action,
                  .changes = true,
                  .seconds = std::max(kSearchSeconds, context->options->timeout)};
  AddIfMatch(*context->options, &request);
  return ReadFirmwareStatus(context->router->Ask(request).body);
}

void Show(const Context& context, const FirmwareStatus& status) {
  json answer = ToJson(status);
  answer["meaning"] = MeaningOfStep(status.result);
  context.out->Json(answer);
  std::vector<Row> rows = {{"result", std::to_string(status.result)},
                           {"meaning", MeaningOfStep(status.result)}};
  if (!status.version.empty()) {
    rows.push_back({"version", status.version});
    rows.push_back({"size", status.size});
  }
  context.out->Table({"MEMBER", "VALUE"}, rows);
}

Failure Stopped(const FirmwareStatus& status, const std::string& next) {
  return {ExitCode::kRefused, MeaningOfStep(status.result), next, ToJson(status)};
}

// The last thing that the router tells of its firmware.
std::string LastEvent(const json& device) {
  std::string last;
  for (const json& event : device.value("events", json::array())) {
    const std::string text = event.value("text", "");
    if (text.starts_with("firmware")) {
      last = text;
    }
  }
  return last;
}

std::string RunningFile(Context* context) {
  return context->router->Ask({.path = "/vars/rss_Ext_Fwu_CurrFwFileName"}).body;
}

FirmwareStatus FetchImage(Context* context) {
  constexpr std::chrono::milliseconds kPoll(500);
  const auto begun = std::chrono::steady_clock::now();
  Progress progress("fetching", std::chrono::seconds(0), context->out->json());
  FirmwareStatus status = Step(context, '2');
  try {
    while (status.result == kDownloading) {
      progress.Show(status.size.empty() ? "begun" : status.size,
                    std::chrono::duration_cast<std::chrono::milliseconds>(
                        std::chrono::steady_clock::now() - begun));
      Pause(kPoll);
      status = Step(context, '9');
    }
  } catch (const Failure& failure) {
    if (failure.code == ExitCode::kInterrupted) {
      // Half an image would be left on the router.
      Step(context, '0');
      throw Failure{ExitCode::kInterrupted, "interrupted: the router has dropped the image",
                    "begin anew: kioctl firmware search"};
    }
    throw;
  }
  return status;
}

}  // namespace

void RunFirmwareStatus(Context* context) {
  Show(*context, ReadFirmwareStatus(context->router->Ask({.path = "/firmware"}).body));
}

void RunFirmwareSearch(Context* context) {
  Step(context, '0');
  const FirmwareStatus status = Step(context, '1');
  if (status.result == kNoList) {
    const std::string event = LastEvent(context->router->Device());
    Failure failure =
        Stopped(status, "check the router's way to its firmware server, and try again");
    failure.what += event.empty() ? "" : " (" + event + ")";
    throw failure;
  }
  Show(*context, status);
  if (status.result == kFound && !context->out->json()) {
    context->out->Note("next: kioctl firmware download");
  }
}

void RunFirmwareDownload(Context* context) {
  const FirmwareStatus before = Step(context, '9');
  if (before.result != kFound && before.result != kDownloading) {
    throw Stopped(before, before.result == kDownloaded ? "kioctl firmware upgrade"
                                                       : "kioctl firmware search");
  }
  const FirmwareStatus status = FetchImage(context);
  if (status.result != kDownloaded) {
    throw Stopped(status, "try again: kioctl firmware search");
  }
  Show(*context, status);
  if (!context->out->json()) {
    context->out->Note("next: kioctl firmware upgrade");
  }
}

void RunFirmwareUpgrade(Context* context) {
  const FirmwareStatus before = Step(context, '9');
  if (before.result != kDownloaded) {
    throw Stopped(before,
                  before.result == kFound ? "kioctl firmware download" : "kioctl firmware search");
  }
  const std::string old_file = RunningFile(context);
  const FirmwareStatus status = Step(context, '4');
  if (status.result != kAnnounced) {
    throw Stopped(status, "see the events of kioctl device");
  }
  if (!context->options->wait) {
    Show(*context, status);
    if (!context->out->json()) {
      context->out->Note("next: kioctl wait --for " + std::to_string(status.seconds) +
                         ", then see the events of kioctl device");
    }
    return;
  }
  const json device = WaitUntilBack(context, std::chrono::seconds(status.seconds));
  const std::string file = RunningFile(context);
  if (file == old_file) {
    throw Failure{ExitCode::kNotInForce, "the router still runs " + file + ": " + LastEvent(device),
                  "see the events of kioctl device, and begin anew: kioctl firmware search"};
  }
  context->out->Json({{"outcome", "upgraded"}, {"from", old_file}, {"to", file}});
  context->out->Line("upgraded from " + old_file + " to " + file, Tone::kGood);
}

}  // namespace kioctl
