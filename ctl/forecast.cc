#include "forecast.h"

#include "answers.h"
#include "catalogue.h"

namespace kioctl {
namespace {

using nlohmann::json;

std::string TextOf(const json& text) {
  return text.is_string() ? text.get<std::string>() : "(none)";
}

std::string ActionsOf(const json& forecast) {
  std::string names;
  for (const json& action : forecast.value("actions", json::array())) {
    names += (names.empty() ? "" : ", ") + action.value("name", "") + " (" +
             action.value("seconds", json(0)).dump() + " s)";
  }
  return names.empty() ? "none" : names;
}

std::string LinkOf(const json& link) {
  std::string text = link.value("drops", false) ? "drops" : "stays";
  text += " (by " + link.value("by", "") + ")";
  for (const json& network : link.value("rejoin", json::array())) {
    text += "; rejoin " + network.value("name", "") + " on " + network.value("band", "") + " GHz";
  }
  for (const json& assumed : link.value("assumed", json::array())) {
    text += "; assumed: " + TextOf(assumed);
  }
  return text;
}

}  // namespace

std::vector<Row> ChangesOf(const json& forecast) {
  std::vector<Row> rows;
  for (const json& node : forecast.value("nodes", json::array())) {
    rows.push_back({NameOfNode(node.value("path", "")), TextOf(node.value("old", json())),
                    TextOf(node.value("new", json()))});
  }
  return rows;
}

void ShowForecast(const Output& out, const json& forecast) {
  // Of a batch that does not apply, the verdict is that on an apply after it.
  const json& verdict =
      forecast.contains("apply") && forecast.value("result", 0) == 0 ? forecast["apply"] : forecast;
  const int code = verdict.value("result", 0);
  if (code != 0) {
    throw RefusalOf({code, verdict.value("message", ""), 0});
  }
  out.Json(forecast);
  const std::vector<Row> changes = ChangesOf(forecast);
  out.Table({"SETTING", "OLD", "NEW"}, changes);
  if (changes.empty()) {
    out.Note("nothing would change");
  }
  out.Note("actions: " + ActionsOf(forecast));
  out.Note("wait: " + forecast.value("wait", json(0)).dump() + " s");
  if (forecast.contains("link")) {
    out.Note("link: " + LinkOf(forecast["link"]));
  }
}

}  // namespace kioctl
