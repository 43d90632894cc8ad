// The commands that change nothing: login and logout, and what the router is.
#include "commands.h"
#include "status.h"
#include "wait.h"

namespace kioctl {
namespace {

using nlohmann::json;

std::string Text(const json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

}  // namespace

void RunLogin(Context* context) {
  context->router->LogIn();
  context->out->Json({{"loggedIn", true}});
  context->out->Line("logged in", Tone::kGood);
}

void RunLogout(Context* context) {
  // A client that is not logged in has nothing to end, and needs no password for it.
  const Reply reply = context->router->TryAsIs({.method = "POST", .path = "/logout"});
  if (reply.status != kUnauthorized) {
    ThrowUnlessDone(reply);
  }
  context->out->Json({{"loggedIn", false}});
  context->out->Line("logged out");
}

void RunDevice(Context* context) {
  const json device = context->router->Device();
  const Output& out = *context->out;
  out.Json(device);
  std::vector<Row> rows;
  for (const auto& [name, value] : device.items()) {
    if (name != "events" && !value.is_object()) {
      rows.push_back({name, value.is_null() ? "none" : Text(value)});
    }
    if (value.is_object()) {
      for (const auto& [member, text] : value.items()) {
        std::string path = name;
        path.append(".").append(member);
        rows.push_back({path, Text(text)});
      }
    }
  }
  for (const json& event : device.value("events", json::array())) {
    rows.push_back(
        {"event at " + Text(event.value("uptime", json())), Text(event.value("text", json("")))});
  }
  out.Table({"MEMBER", "VALUE"}, rows);
}

void RunWait(Context* context) {
  const Options& options = *context->options;
  WaitFor(context, {options.apply_id, options.boot_id, std::chrono::seconds(options.promised)});
}

}  // namespace kioctl
