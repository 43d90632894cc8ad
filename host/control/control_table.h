// The descriptions of all routes of the control port.
#ifndef HOST_CONTROL_CONTROL_TABLE_H
#define HOST_CONTROL_CONTROL_TABLE_H

#include <array>

#include "route_description.h"
#include "route_table.h"

namespace kiohost::control_routes {

using Kind = RouteParameter::Kind;
using Need = BodyRule::Need;

inline constexpr RouteAnswer kClockAnswer = {"application/json", "Clock"};

inline constexpr RouteDescription kClock = {.pattern = "/clock",
                                            .method = "GET",
                                            .summary = "Tells what the clock shows.",
                                            .answers = {{kClockAnswer}}};

inline constexpr RouteDescription kSetClock = {
    .pattern = "/clock",
    .method = "POST",
    .summary = "Moves, stops or sets the clock, and does all that falls due by it.",
    .body = {.need = Need::kFilled, .noun = "JSON object"},
    .answers = {{kClockAnswer}}};

// All of them, in the order of the page.
inline constexpr std::array kAll = {&routes::kIndex, &routes::kOpenApi, &kClock, &kSetClock};

}  // namespace kiohost::control_routes

#endif  // HOST_CONTROL_CONTROL_TABLE_H
