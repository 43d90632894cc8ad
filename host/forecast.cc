#include "forecast.h"

#include <kioapp/platform.h>

#include "actions.h"
#include "link_forecast.h"
#include "neighbours.h"
#include "secrets.h"

namespace kiohost {
namespace {

Json TextAsJson(const std::optional<std::string>& text, bool secret) {
  return text ? Json(secret ? std::string(kMasked) : *text) : Json(nullptr);
}

Json ActionsAsJson(unsigned int mask) {
  Json actions = Json::array();
  for (const NamedAction& action : ActionsOf(mask)) {
    actions.push_back({{"name", action.name},
                       {"seconds", get_ExternalCall_UseSec(static_cast<int>(action.bit))}});
  }
  return actions;
}

Json LinkAsJson(const LinkForecast& link) {
  Json rejoin = Json::array();
  for (const LinkForecast::Network& network : link.rejoin) {
    rejoin.push_back({{"band", network.band},
                      {"name", network.name},
                      {"encryption", network.encryption},
                      {"on", network.on}});
  }
  return {{"by", link.by},
          {"drops", link.drops},
          {"known", link.known},
          {"assumed", link.assumed},
          {"rejoin", std::move(rejoin)}};
}

void AddBatch(const BatchForecast& batch, Json* json) {
  (*json)["applies"] = batch.applies;
  (*json)["commits"] = batch.commits;
  if (batch.apply_code) {
    (*json)["apply"] = {{"result", *batch.apply_code}, {"message", batch.apply_message}};
  }
}

}  // namespace

Json ChangesAsJson(const std::vector<NodeChange>& changes) {
  Json nodes = Json::array();
  for (const NodeChange& change : changes) {
    const bool secret = IsSecret(change.path);
    nodes.push_back({{"path", change.path},
                     {"old", TextAsJson(change.before, secret)},
                     {"new", TextAsJson(change.after, secret)}});
    if (secret) {
      nodes.back()["secret"] = true;
    }
  }
  return nodes;
}

Json AsJson(const Forecast& forecast, const std::string& peer_address,
            const std::string& local_address) {
  const std::vector<NodeChange> changes = ChangesOf(forecast.before, forecast.after);
  Json json = {{"result", forecast.code}, {"message", forecast.message}};
  if (forecast.batch) {
    AddBatch(*forecast.batch, &json);
  }
  json["nodes"] = ChangesAsJson(changes);
  json["actions"] = ActionsAsJson(forecast.actions);
  json["wait"] = forecast.wait_seconds;
  const LinkEnds ends = {peer_address, local_address, MacOf(peer_address)};
  json["link"] = LinkAsJson(ForecastLink(ends, forecast.before, forecast.after, forecast.actions));
  return json;
}

}  // namespace kiohost
