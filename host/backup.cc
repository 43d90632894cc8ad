#include "backup.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "md5_text.h"
#include "nodes.h"
#include "secrets.h"

namespace kiohost {
namespace {

constexpr char kFormat[] = "kiohost backup";
constexpr int kFormatVersion = 1;
// It asks for a survey instead of a change.
constexpr std::string_view kSurveySwitch = "/uplink/extendersite/survey";
constexpr size_t kMostCharacters = 127;  // that the library reads of an element

// The levels below the document's root. A number is added to the name of a repeated element.
std::vector<std::string> StepsOf(std::string_view path) {
  std::vector<std::string> steps;
  while (!path.empty()) {
    path.remove_prefix(1);
    steps.emplace_back(path.substr(0, path.find('/')));
    path.remove_prefix(steps.back().size());
  }
  return steps;
}

// Where a setting stands in an archive: as in a settings document, with a list for the rules.
Json* PlaceOf(std::string_view document_path, size_t instance, Json* settings) {
  Json* place = settings;
  for (const std::string& step : StepsOf(document_path)) {
    if (step == "WlAcLists") {
      continue;  // documents have the rules without it
    }
    if (const size_t colon = step.find(':'); colon != std::string::npos) {
      Json& list = (*place)[step.substr(0, colon)];
      while (list.size() < instance) {
        list.push_back(Json::object());
      }
      place = &list[instance - 1];
    } else {
      place = &(*place)[step];
    }
  }
  return place;
}

// The node of an instance, in a path that has "??" for its number.
std::string NodeOf(std::string node, size_t instance) {
  const size_t number = node.find("??");
  return number == std::string::npos ? node : node.replace(number, 2, std::to_string(instance));
}

// How many instances there may be: one of a setting that is not repeated.
size_t InstancesOf(const std::string& node, Store* store) {
  const size_t number = node.find(":??");
  if (number == std::string::npos) {
    return 1;
  }
  return std::stoul("0" + store->Get(node.substr(0, number) + "#").value_or(""));
}

// The text of a node. A rule that is not active has no node for that.
std::optional<std::string> TextOf(const std::string& node, Store* store) {
  constexpr std::string_view kActive = "/active";
  std::optional<std::string> text = store->Get(node);
  if (!text && node.ends_with(kActive) &&
      store->Get(node.substr(0, node.size() - kActive.size()) + "/mac")) {
    text = "0";
  }
  return text;
}

// Takes the numbers without a rule out of the lists.
void RemoveGaps(Json* settings) {
  for (Json& value : *settings) {
    if (value.is_array()) {
      auto& items = value.get_ref<Json::array_t&>();
      std::erase_if(items, [](const Json& item) { return item.empty(); });
    } else if (value.is_object()) {
      RemoveGaps(&value);
    }
  }
}

// Quotes stay as they are: the library counts the characters of entities, too.
std::string XmlText(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    switch (c) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      default:
        xml += c;
    }
  }
  return xml;
}

// The elements of a value of an archive.
void AppendXml(const std::string& name, const Json& value, std::string* xml) {
  if (value.is_array()) {
    for (const Json& item : value) {
      AppendXml(name, item, xml);
    }
    return;
  }
  *xml += "<" + name + ">";
  if (value.is_object()) {
    for (const auto& [member, content] : value.items()) {
      AppendXml(member, content, xml);
    }
  } else {
    *xml += XmlText(value.get_ref<const std::string&>());
  }
  *xml += "</" + name + ">\n";
}

// What is wrong with a value of an archive, as `known` has it; empty when nothing is.
std::string FaultOf(const std::string& path, const Json& value, const Json& known) {
  if (known.is_array()) {
    if (!value.is_array()) {
      return path + " is no list";
    }
    for (const Json& item : value) {
      if (std::string fault = FaultOf(path, item, known[0]); !fault.empty()) {
        return fault;
      }
    }
    return {};
  }
  if (known.is_string()) {
    if (!value.is_string()) {
      return path + " is no text";
    }
    const auto& text = value.get_ref<const std::string&>();
    return text.find('\0') != std::string::npos || XmlText(text).size() > kMostCharacters
               ? path + " is too long or holds a NUL"
               : "";
  }
  if (!value.is_object()) {
    return path + " is no object";
  }
  for (const auto& [name, content] : value.items()) {
    std::string below = path;
    below.append(path.empty() ? "" : "/").append(name);
    if (!known.contains(name)) {
      return "this device has no setting " + below;
    }
    if (std::string fault = FaultOf(below, content, known[name]); !fault.empty()) {
      return fault;
    }
  }
  return {};
}

std::string HashOf(const Json& settings) { return Md5Text(JsonText(settings)); }

Status Misfit(const std::string& what) { return {ExitCode::kUsage, what}; }

// What a member of the manifest must be.
Status CheckMember(const Json& archive, const Json& manifest, const char* name, const char* of) {
  return archive.contains(name) && archive[name] == manifest[name]
             ? Status()
             : Misfit(std::string("the archive is of another ") + of + ": " +
                      JsonString(archive.contains(name) && archive[name].is_string()
                                     ? archive[name].get<std::string>()
                                     : "?") +
                      ", and not " + manifest[name].dump());
}

// A document must hold these, and none of them is restored.
void AddWhatIsNoSetting(Store* store, Json* device) {
  if (Json& uplink = (*device)["UpLinkConnection"]; uplink.contains("ExtenderSite")) {
    uplink["ExtenderSite"]["Survey"] = "0";
  }
  for (const char* band : {"2.4", "5"}) {
    if (const std::string radio = std::string("Wireless") + band; device->contains(radio)) {
      (*device)[radio]["WirelessBSSID"] =
          store->Get(RadioNodes(band) + "wirelessbssid").value_or("");
    }
  }
}

}  // namespace

void Backup::Settings(Contents contents, Json* settings) {
  for (const Json& variable : *catalogue_) {
    if (!variable["access"]["write"].get<bool>() || !variable["storeNode"].is_string()) {
      continue;
    }
    const auto node = variable["storeNode"].get<std::string>();
    if (node == kSurveySwitch || (contents == Contents::kPublic && IsSecret(node))) {
      continue;
    }
    const size_t instances = contents == Contents::kPossible ? 1 : InstancesOf(node, store_);
    for (size_t instance = 1; instance <= instances; ++instance) {
      const std::optional<std::string> text = TextOf(NodeOf(node, instance), store_);
      if (text || contents == Contents::kPossible) {
        *PlaceOf(variable["documentPath"].get<std::string>(), instance, settings) =
            text.value_or("");
      }
    }
  }
  RemoveGaps(settings);
}

Json Backup::Manifest() {
  const auto text = [this](const char* node) { return store_->Get(node).value_or(""); };
  return {{"format", kFormat},
          {"formatVersion", kFormatVersion},
          {"model", text(kModelNode)},
          {"firmware", text(kFirmwareNode)},
          {"documents", text(kMajorNode) + "." + text(kMinorNode)}};
}

Json Backup::Make(bool secrets) {
  // All of it as of one moment.
  const StoreView view(store_);
  Json settings = Json::object();
  Settings(secrets ? Contents::kAll : Contents::kPublic, &settings);
  Json archive = Manifest();
  archive["secrets"] = secrets;
  archive["hash"] = HashOf(settings);
  archive["settings"] = std::move(settings);
  return archive;
}

Status Backup::Check(const Json& archive, bool other_firmware) {
  if (!archive.is_object() || !archive.contains("format") || archive["format"] != kFormat) {
    return Misfit("the body is no archive of settings");
  }
  const Json manifest = Manifest();
  if (!archive.contains("formatVersion") || archive["formatVersion"] != kFormatVersion) {
    return Misfit("the archive has another format version than " + std::to_string(kFormatVersion));
  }
  Status status = CheckMember(archive, manifest, "model", "model");
  if (status.ok()) {
    status = CheckMember(archive, manifest, "documents", "version of settings documents");
  }
  if (status.ok() && !other_firmware) {
    status = CheckMember(archive, manifest, "firmware", "firmware");
  }
  if (!status.ok()) {
    return status;
  }
  Json known = Json::object();
  Settings(Contents::kPossible, &known);
  const Json none;
  const Json& settings = archive.contains("settings") ? archive["settings"] : none;
  if (const std::string fault = FaultOf("", settings, known); !fault.empty()) {
    return Misfit(fault);
  }
  return archive.contains("hash") && archive["hash"] == HashOf(settings)
             ? Status()
             : Misfit(
                   "the settings of the archive are not those that it was made with: the hash"
                   " is another one");
}

Status Backup::Read(const std::string& archive, bool other_firmware, std::string* document) {
  const Json read = Json::parse(archive, nullptr, false);
  if (Status status = Check(read, other_firmware); !status.ok()) {
    return status;
  }
  Json settings = Json::object();
  Settings(Contents::kAll, &settings);
  settings.merge_patch(read["settings"]);
  AddWhatIsNoSetting(store_, &settings["Device"]);
  *document = "<?xml version=\"1.0\" ?>\n<root>\n<specVersion><major>" +
              store_->Get(kMajorNode).value_or("1") + "</major><minor>" +
              store_->Get(kMinorNode).value_or("1") + "</minor></specVersion>\n";
  for (const auto& [name, content] : settings.items()) {
    AppendXml(name, content, document);
  }
  *document += "</root>\n";
  return {};
}

}  // namespace kiohost
