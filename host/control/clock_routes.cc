#include "control/clock_routes.h"

#include <chrono>
#include <cmath>
#include <optional>
#include <string>

#include "control/control_table.h"
#include "control/json_body.h"
#include "json_reply.h"

namespace kiohost {
namespace {

constexpr int64_t kSecondsOfADay = 86400;
constexpr int64_t kMostAdvance = 366 * kSecondsOfADay;
constexpr int64_t kMostUptime = 0x7fffffff;

struct Change {
  std::optional<double> rate;
  std::optional<long> uptime;
  std::optional<std::chrono::nanoseconds> advance;
};

std::optional<double> RateOf(const Json& body, Reply* refusal) {
  constexpr double kLeastRate = 0.001;
  if (body.contains("rate")) {
    const auto rate = body["rate"].get<double>();
    if (!body.contains("mode") && rate >= kLeastRate && rate <= HostClock::kMostRate) {
      return rate;
    }
    *refusal = BadRequestReply(
        "\"rate\" takes a number from 0.001 to 1000, and stands without "
        "\"mode\"");
    return std::nullopt;
  }
  const auto mode = body["mode"].get<std::string>();
  if (mode == "manual" || mode == "real") {
    return mode == "real" ? 1 : 0;
  }
  *refusal = BadRequestReply(R"("mode" takes "manual" or "real")");
  return std::nullopt;
}

// What the body asks for; or nothing, and the refusal.
std::optional<Change> ReadChange(const RequestView& request, Reply* refusal) {
  using Type = JsonMember::Type;
  const std::optional<Json> body = JsonBody(request,
                                            {{"mode", Type::kText},
                                             {"rate", Type::kNumber},
                                             {"uptime", Type::kWhole},
                                             {"advance", Type::kNumber}},
                                            refusal);
  if (!body) {
    return std::nullopt;
  }
  Change change;
  if (body->contains("mode") || body->contains("rate")) {
    change.rate = RateOf(*body, refusal);
    if (!change.rate) {
      return std::nullopt;
    }
  }
  if (body->contains("uptime")) {
    const auto uptime = (*body)["uptime"].get<int64_t>();
    if (uptime > kMostUptime) {
      *refusal = BadRequestReply("\"uptime\" takes at most " + std::to_string(kMostUptime));
      return std::nullopt;
    }
    change.uptime = uptime;
  }
  if (body->contains("advance")) {
    const std::chrono::duration<double> advance((*body)["advance"].get<double>());
    if (advance > std::chrono::seconds(kMostAdvance)) {
      *refusal =
          BadRequestReply("\"advance\" takes at most " + std::to_string(kMostAdvance) + " seconds");
      return std::nullopt;
    }
    change.advance = std::chrono::round<std::chrono::nanoseconds>(advance);
  }
  return change;
}

Reply Describe(const HostClock& clock) {
  const double rate = clock.rate();
  return JsonReply({{"mode", rate == 0   ? "manual"
                             : rate == 1 ? "real"
                                         : "rate"},
                    {"rate", rate == std::floor(rate) ? Json(static_cast<int>(rate)) : Json(rate)},
                    {"uptime", clock.Uptime()}});
}

// Notes at once how far the clock is wanted: the library may be within a command that waits for it.
void NoteAdvance(const ClockDriver& driver, const RequestView& request) {
  Reply refusal;
  if (const std::optional<Change> change = ReadChange(request, &refusal);
      change && change->advance) {
    driver.clock()->Want(*change->advance);
  }
}

Reply Set(ClockDriver* driver, const RequestView& request) {
  Reply refusal;
  const std::optional<Change> change = ReadChange(request, &refusal);
  if (!change) {
    return refusal;
  }
  if (change->rate) {
    driver->clock()->SetRate(*change->rate);
  }
  if (change->uptime) {
    driver->clock()->SetUptime(*change->uptime);
  }
  driver->RunToWanted();
  return Describe(*driver->clock());
}

}  // namespace

void AddClockRoutes(ClockDriver* driver, Router* router) {
  router->Add(
      {.description = control_routes::kClock,
       .answer = [driver](const RequestView& /*request*/) { return Describe(*driver->clock()); }});
  router->Add({.description = control_routes::kSetClock,
               .begin = [driver](const RequestView& request) { NoteAdvance(*driver, request); },
               .handle = [driver](const RequestView& request) { return Set(driver, request); }});
}

}  // namespace kiohost
