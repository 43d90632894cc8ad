// What a dry run tells.
#ifndef CTL_FORECAST_H
#define CTL_FORECAST_H

#include <nlohmann/json.hpp>

#include "output.h"

namespace kioctl {

// Prints a forecast. Throws a Failure when the router would refuse.
void ShowForecast(const Output& out, const nlohmann::json& forecast);

// The nodes that would change: path, old and new text.
std::vector<Row> ChangesOf(const nlohmann::json& forecast);

}  // namespace kioctl

#endif  // CTL_FORECAST_H
