// capture: a router's state as a profile for the virtual router.
#include "answers.h"
#include "capture.h"
#include "commands.h"
#include "files.h"

namespace kioctl {
namespace {

using nlohmann::json;

constexpr char kTried[] = "Found out by a dry run.";
constexpr char kTaken[] = "Taken to be so: the router does not tell it.";

int ResultOf(Router* router, const std::string& document) {
  const Reply reply = router->Ask({.method = "POST",
                                   .path = "/settings?dry-run=1",
                                   .body = document,
                                   .headers = {"Accept: application/json"}});
  return ReadJson(reply.body).at("result").get<int>();
}

// What tells the library which elements documents must hold. A router does not tell it, but refuses
// documents that lack one.
void FindFeatures(Router* router, Capture* capture) {
  // One that says nothing is taken by a router that is fixed, and by no other.
  const bool is_fixed = ResultOf(router, capture->EmptyDocument()) == 0;
  capture->Add("/zentrolinks/configurable", is_fixed ? "0" : "1", kTried);
  const bool can_try = !is_fixed && ResultOf(router, capture->Document()) == 0;
  for (const auto& [element, node] : {std::pair{"Device/EasyRoaming", "/zentrolinks/easyroaming"},
                                      std::pair{"Device/SafetyVyr", "/zentrolinks/safetyvyr"}}) {
    const bool has = capture->Has(element);
    const bool needs = can_try ? has && ResultOf(router, capture->Document(element)) != 0 : has;
    capture->Add(node, needs ? "1" : "0", can_try ? kTried : kTaken);
  }
}

// A radio that is there and cannot be changed is fixed.
void FindFixedRadios(const json& catalogue, Capture* capture) {
  for (const json& variable : catalogue.at("variables")) {
    for (const char* const band : {"2.4", "5"}) {
      const std::string radio = "/lan/wireless" + std::string(band) + ":1/";
      if (variable.value("storeNode", json()) == radio + "channel" &&
          capture->Has("Device/Wireless" + std::string(band))) {
        capture->Add(radio + "configurable", variable.value("changeableNow", true) ? "1" : "0");
      }
    }
  }
}

// What only the process in the router knows.
void AddHostNodes(Capture* capture) {
  constexpr char kPort[] = "8080";
  capture->Add("/zentrolinks/rsshttpport", kPort, "Of the virtual router.");
  capture->Add("/zentrolinks/tempdirecory", "", "Of the virtual router: --temp-dir.");
  capture->Add("/zentrolinks/scriptdirecory", "", "Of the virtual router: --script-dir.");
  capture->Add("/zentrolinks/apcloning", "0", kTaken);
  capture->Add("/zentrolinks/fwupgrade", "1", kTaken);
}

}  // namespace

void RunCapture(Context* context) {
  const Options& options = *context->options;
  RefuseOneFileForMany(options, options.output);
  Router* const router = context->router;
  const json archive = ReadJson(router->Ask({.path = "/backup"}).body);
  const json catalogue = ReadJson(router->Ask({.path = "/vars"}).body);
  const json values = ReadJson(router->Ask({.path = "/vars?values=1"}).body);
  Capture capture(archive, catalogue, values);
  FindFeatures(router, &capture);
  FindFixedRadios(catalogue, &capture);
  AddHostNodes(&capture);
  const std::string profile = capture.Text(capture.Model() + ", as it was at " + router->url() +
                                           ", with stand-ins for its secrets.");
  if (options.output == "-") {
    if (context->out->json()) {
      context->out->Json({{"profile", profile}});
    } else {
      context->out->Raw(profile);
    }
    return;
  }
  WriteOutput(options.output, profile);
  context->out->Json({{"file", options.output}});
  context->out->Line("written: " + options.output, Tone::kGood);
  if (!context->out->json()) {
    context->out->Note("next: kiohost --factory-reset --profile " + options.output);
  }
}

}  // namespace kioctl
