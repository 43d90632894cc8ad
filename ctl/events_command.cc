// What happens at the router, as it happens.
#include <string_view>

#include "commands.h"

namespace kioctl {
namespace {

using nlohmann::json;

// Reads the stream line by line: only the data of an event is looked at, which is one line of JSON.
class EventReader {
 public:
  explicit EventReader(const Context& context) : context_(&context) {}

  // Whether more events are wanted.
  bool Take(std::string_view text) {
    constexpr std::string_view kData = "data: ";
    line_ += text;
    for (size_t end = line_.find('\n'); end != std::string::npos; end = line_.find('\n')) {
      if (line_.starts_with(kData)) {
        Show(ReadJson(line_.substr(kData.size(), end - kData.size())));
        ++count_;
      }
      line_.erase(0, end + 1);
      if (context_->options->count > 0 && count_ >= context_->options->count) {
        return false;
      }
    }
    return true;
  }

 private:
  void Show(const json& event) const {
    const Output& out = *context_->out;
    if (out.json()) {
      out.Raw(event.dump(-1, ' ', false, json::error_handler_t::replace) + "\n");
      return;
    }
    std::string text = event.value("uptime", json()).dump() + "\t" + event.value("kind", "");
    for (const auto& [name, value] : event.items()) {
      if (name != "uptime" && name != "kind" && name != "id") {
        text.append("\t").append(name).append("=").append(
            value.is_string() ? Printable(value.get<std::string>()) : value.dump());
      }
    }
    out.Line(text);
  }

  const Context* context_;
  std::string line_;
  int count_ = 0;
};

}  // namespace

void RunEvents(Context* context) {
  EventReader reader(*context);
  Request request{.path = "/events",
                  .take = [&reader](std::string_view text) { return reader.Take(text); }};
  if (!context->options->since.empty()) {
    request.headers.push_back("Last-Event-ID: " + context->options->since);
  }
  context->router->Ask(request);
}

}  // namespace kioctl
