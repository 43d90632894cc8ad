#include "capture.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "catalogue.h"
#include "document_text.h"
#include "elements.h"
#include "node_check.h"
#include "profile.h"
#include "scratch_store.h"
#include "side.h"

namespace kioctl {
namespace {

using nlohmann::json;

constexpr char kStandIn[] = "A stand-in for the router's own secret.";
constexpr char kNotTold[] = "A stand-in: a router does not tell it.";
constexpr char kRuleNumber[] = "{n}";
constexpr char kMinor[] = "/zentrolinks/specversion/minor";

// The node of a variable, with its index where it has one.
std::string NodeOf(const json& variable, int index) {
  std::string node = LowerCase(variable.at("storeNode"));
  const size_t mark = node.find("??");
  if (mark == std::string::npos) {
    return node;
  }
  // "(??+2)" is the index and two.
  const bool adds = mark > 0 && node[mark - 1] == '(';
  const size_t begin = adds ? mark - 1 : mark;
  const size_t end = adds ? node.find(')', mark) + 1 : mark + 2;
  const int more = adds ? NumberAt(node, mark + 3) : 0;
  return node.replace(begin, end - begin, std::to_string(index + more));
}

std::string NameOf(const json& variable, int index) {
  std::string name = variable.at("name");
  if (const size_t mark = name.find("??"); mark != std::string::npos) {
    constexpr int kTen = 10;
    name[mark] = static_cast<char>('0' + index / kTen);
    name[mark + 1] = static_cast<char>('0' + index % kTen);
  }
  return name;
}

// Texts for a password or key, of which one keeps the rule of the device: of each length, and of
// characters that most rules allow.
std::vector<std::string> StandIns() {
  constexpr size_t kMost = 64;
  std::vector<std::string> texts = {"stand-in-secret"};
  for (const char* const letters : {"standinsecret", "0123456789", "0123456789ABCDEF"}) {
    const std::string pattern = letters;
    for (size_t length = 1; length <= kMost; ++length) {
      std::string text;
      while (text.size() < length) {
        text += pattern[text.size() % pattern.size()];
      }
      texts.push_back(text);
    }
  }
  return texts;
}

// What the settings of the same beginning are called in a profile.
std::string HeadingOf(const std::string& node) {
  for (const auto& [begin, heading] :
       {std::pair{"/zentrolinks/", "The app's back end"}, std::pair{"/sys/", "Device"},
        std::pair{"/uplink/", "Uplink"}, std::pair{"/lan/", "Radios"},
        std::pair{"/safetyvyr/", "Security service"}, std::pair{"/fwupgradeinfo/", "Firmware"},
        std::pair{"/wirelesssitesurvey/", "Site survey"}}) {
    if (node.starts_with(begin)) {
      return heading;
    }
  }
  return "Others";
}

std::string ElementText(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">\n";
}

std::string RemarkLine(const std::string& remark) {
  return remark.empty() ? "" : "# " + remark + "\n";
}

}  // namespace

Capture::Capture(const json& archive, const json& catalogue, const json& values) {
  AddVariables(catalogue, values);
  AddSettings(archive);
  AddCircuit();
  AddStandIns();
}

// What was set and not applied is in the variables, and not in the archive: settings come from
// there.
void Capture::AddSettings(const json& archive) {
  const Side side = SideOfArchive(Side::Kind::kArchive, "", archive);
  for (const auto& [key, held] : side.held) {
    const Setting* const setting = FindSetting(key);
    if (setting != nullptr && held.text && key.starts_with('/')) {
      Add(key, *held.text);
    }
  }
  for (const char* const band : {"2.4", "5"}) {
    const json device = archive.at("settings").value("Device", json::object());
    const json radio = device.value(std::string("Wireless") + band, json::object());
    const json access = radio.value("AccessControl", json::object());
    int number = 0;
    for (const json& rule : access.value("AcRule", json::array())) {
      const std::string node = "/lan/wireless" + std::string(band) +
                               ":1/accesscontrol/acrule:" + std::to_string(++number);
      Add(node + "/active", rule.value("Active", "0"));
      Add(node + "/mac", rule.value("MAC", ""));
    }
  }
}

void Capture::AddVariables(const json& catalogue, const json& values) {
  std::map<std::string, std::string> by_name;
  for (const json& value : values.at("variables")) {
    if (!value.value("secret", false)) {
      by_name[value.at("name")] = value.at("value");
    }
  }
  for (const json& variable : catalogue.at("variables")) {
    if (!variable.at("storeNode").is_string() || variable.at("access").value("write", false)) {
      continue;
    }
    const int last = variable.contains("index") ? variable["index"].value("last", 0) : 0;
    for (int index = 0; index <= last; ++index) {
      const auto value = by_name.find(NameOf(variable, index));
      const std::string node = NodeOf(variable, index);
      // Without a text a node counts as absent; what counts others is none.
      if (value == by_name.end() || value->second.empty() || node.ends_with('#')) {
        continue;
      }
      const Setting* const setting = FindSetting(node);
      if (setting != nullptr && setting->is_secret) {
        Add(node, "", "Left out: a key.");
      } else {
        Add(node, value->second);
      }
    }
  }
}

// In version 1.0 the circuit is set by documents, and told by nothing.
void Capture::AddCircuit() {
  if (TextOf(kMinor) == "0") {
    Add("/uplink/dsl/vpi", "8", kNotTold);
    Add("/uplink/dsl/vci", "35", kNotTold);
    Add("/uplink/dsl/encapsulationmode", "LLC", kNotTold);
  }
}

void Capture::AddStandIns() {
  AddStandIn("/sys/user:1/password");
  if (!TextOf("/uplink/loginusername").empty() || TextOf("/uplink/conntype").starts_with("PPP")) {
    AddStandIn("/uplink/loginpassword");
  }
  if (!TextOf("/uplink/extendersite/wirelessname").empty()) {
    AddStandIn("/uplink/extendersite/encryptionkey");
  }
  for (const char* const band : {"2.4", "5"}) {
    const std::string radio = "/lan/wireless" + std::string(band) + ":1/";
    const std::string mode = LowerCase(TextOf(radio + "encryptionmode"));
    if (!mode.empty() && mode != "none") {
      AddStandIn(radio + "encryptionkey");
    }
  }
}

void Capture::AddStandIn(const std::string& node) {
  for (const std::string& text : StandIns()) {
    if (FaultOf(node, text).empty()) {
      Add(node, text, kStandIn);
      return;
    }
  }
  Add(node, "", "Left out: no stand-in keeps the device's rule.");
}

void Capture::Add(const std::string& node, const std::string& text, const std::string& remark) {
  nodes_[LowerCase(node)] = {text, remark};
}

std::string Capture::TextOf(const std::string& node) const {
  const auto found = nodes_.find(LowerCase(node));
  return found == nodes_.end() ? "" : found->second.text;
}

std::string Capture::FaultOf(const std::string& node, const std::string& text) const {
  return kiohost::NodeFault(
      {node, text}, [this](std::string_view path) -> std::optional<std::string> {
        const auto found = nodes_.find(LowerCase(std::string(path)));
        return found == nodes_.end() ? std::nullopt : std::optional(found->second.text);
      });
}

std::string Capture::Version() const { return TextOf(kMinor) == "0" ? "1.0" : "1.1"; }

std::string Capture::Model() const { return TextOf("/sys/modelnumber"); }

bool Capture::Has(const std::string& block) const {
  const std::vector<Element> elements = ElementsOf("settings " + Version());
  return std::any_of(elements.begin(), elements.end(), [&](const Element& element) {
    return (element.path == block || element.parent == block) && !element.node.empty() &&
           nodes_.count(LowerCase(element.node)) > 0;
  });
}

std::string Capture::EmptyDocument() const {
  return "<root><specVersion><major>" + TextOf("/zentrolinks/specversion/major") +
         "</major><minor>" + TextOf(kMinor) + "</minor></specVersion><Device> </Device></root>";
}

std::string Capture::Document(const std::string& without) const {
  std::string xml = "<root>\n";
  AppendElements("", "", without, &xml);
  return xml + "</root>\n";
}

// The elements of a block; those of a rule have its number.
void Capture::AppendElements(const std::string& parent, const std::string& rule,
                             const std::string& without, std::string* xml) const {
  for (const Element& element : ElementsOf("settings " + Version())) {
    if (element.parent != parent || element.path == without || element.name == "Configurable") {
      continue;
    }
    if (!element.is_block) {
      *xml += ElementText(element.name, EncodeEntities(ValueOf(element, rule)));
      continue;
    }
    // One, or as many as there are rules.
    const bool is_rule = element.name == "AcRule";
    for (int number = 1; is_rule ? HasRule(element.path, number) : number == 1; ++number) {
      std::string inside;
      AppendElements(element.path, is_rule ? std::to_string(number) : rule, without, &inside);
      // An empty block would reach on.
      *xml += inside.empty() ? "" : ElementText(element.name, inside);
    }
  }
}

std::string Capture::ValueOf(const Element& element, const std::string& rule) const {
  if (element.node.empty() || element.name == "Survey") {
    return element.minimum && *element.minimum > 0 ? std::to_string(*element.minimum) : "0";
  }
  std::string node = element.node;
  if (const size_t mark = node.find(kRuleNumber); mark != std::string::npos) {
    node.replace(mark, std::string_view(kRuleNumber).size(), rule);
  }
  return TextOf(node);
}

bool Capture::HasRule(const std::string& path, int number) const {
  const std::vector<Element> elements = ElementsOf("settings " + Version());
  std::string node = FindElement(elements, path + "/MAC")->node;
  node.replace(node.find(kRuleNumber), std::string_view(kRuleNumber).size(),
               std::to_string(number));
  return nodes_.count(LowerCase(node)) > 0;
}

std::string Capture::Text(const std::string& title) const {
  std::string text = "# " + title + "\n";
  std::string heading;
  for (const auto& [node, entry] : nodes_) {
    if (HeadingOf(node) != heading) {
      heading = HeadingOf(node);
      text += "\n# --- " + heading + " ---\n\n";
    }
    const std::string fault = FaultOf(node, entry.text);
    if (entry.text.empty() && entry.remark.starts_with("Left out")) {
      text += RemarkLine(node + ": " + entry.remark);
    } else if (!fault.empty()) {
      // The virtual router could not use it, and would say so.
      text += RemarkLine("Left out: " + fault);
    } else {
      text += RemarkLine(entry.remark) + kiohost::FormatProfile({{node, entry.text}});
    }
  }
  return text;
}

}  // namespace kioctl
