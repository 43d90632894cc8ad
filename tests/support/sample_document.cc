#include "support/sample_document.h"

#include <algorithm>
#include <sstream>

namespace kio::test {
namespace {

std::vector<std::string> Split(const std::string& path) {
  std::vector<std::string> names;
  std::istringstream stream(path);
  for (std::string name; std::getline(stream, name, '/');) {
    names.push_back(name);
  }
  return names;
}

std::string Parent(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string Name(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

void AddRadio(Document& document, const std::string& radio, bool version_10) {
  const std::string path = "Device/" + radio + "/";
  const bool is_24 = radio == "Wireless2.4";
  document.Set(path + "WlEnbl", "1");
  document.Set(path + "WlSchedule", is_24 ? "0" : "1");
  if (!version_10) {
    document.Set(path + "WirelessBSSID", is_24 ? "02:00:00:00:24:01" : "02:00:00:00:50:01");
  }
  document.Set(path + "WirelessName", is_24 ? "Home" : "Home-5");
  document.Set(path + "EncryptionMode", is_24 ? "WPA2" : "WPAWPA2");
  document.Set(path + "EncryptionKey", is_24 ? "home-key-24" : "home-key-50");
  if (version_10) {
    return;
  }
  document.Set(path + "EncryptionType", is_24 ? "AES" : "AUTO");
  document.Set(path + "Channel", is_24 ? "6" : "36");
  document.Set(path + "AccessControl/WlAcEnbl", "1");
  document.Set(path + "AccessControl/WlAcMode", is_24 ? "1" : "0");
  if (is_24) {
    document.AddRule(radio, "1", "02:00:00:00:00:01");
    document.AddRule(radio, "0", "02:00:00:00:00:02");
  } else {
    document.AddRule(radio, "1", "02:00:00:00:00:05");
  }
}

Document Build(bool version_10) {
  Document document;
  document.Set("specVersion/major", "1");
  document.Set("specVersion/minor", version_10 ? "0" : "1");
  document.Set("Device/DeviceName", "Kitchen");
  document.Set("Device/DevicePwd", "secret12");
  document.Set("Device/RouterEnbl", "1");
  document.Set("Device/UpLinkConnection/HardwareType", "Ethernet");
  document.Set("Device/UpLinkConnection/ConnType", "DHCP");
  if (version_10) {
    document.Set("Device/UpLinkConnection/MTU", "1400");
    document.Set("Device/ExtenderEnbl", "0");
  } else {
    document.Set("Device/EasyRoaming", "roam-1");
  }
  AddRadio(document, "Wireless2.4", version_10);
  AddRadio(document, "Wireless5", version_10);
  document.Set("Device/SafetyVyr/SafetyVyrEnbl", "1");
  document.Set("Device/SafetyVyr/UrlDetectEnbl", "0");
  document.Set("Device/SafetyVyr/SafetyNotifyEnbl", "1");
  document.Set("Device/SafetyVyr/ToolRecommendEnbl", "0");
  return document;
}

}  // namespace

Document::Element& Document::Find(const std::string& path) {
  Element* element = &root_;
  for (const std::string& name : Split(path)) {
    auto child = std::find_if(element->children.begin(), element->children.end(),
                              [&name](const Element& other) { return other.name == name; });
    if (child == element->children.end()) {
      child = element->children.insert(child, Element{name, "", "", {}});
    }
    element = &*child;
  }
  return *element;
}

Document& Document::Set(const std::string& path, const std::string& value) {
  Find(path).value = value;
  return *this;
}

Document& Document::SetMarkup(const std::string& path, const std::string& markup) {
  Find(path).markup = markup;
  return *this;
}

Document& Document::Remove(const std::string& path) {
  Element& parent = Find(Parent(path));
  std::vector<Element>& siblings = parent.children;
  const std::string name = Name(path);
  const auto element = std::find_if(siblings.begin(), siblings.end(),
                                    [&name](const Element& other) { return other.name == name; });
  if (element != siblings.end()) {
    siblings.erase(element);
  }
  if (siblings.empty()) {
    parent.value = " ";
  }
  return *this;
}

Document& Document::SetFirst(const std::string& path, const std::string& value) {
  std::vector<Element>& siblings = Find(Parent(path)).children;
  siblings.insert(siblings.begin(), Element{Name(path), value, "", {}});
  return *this;
}

Document& Document::AddRule(const std::string& radio, const std::string& active,
                            const std::string& mac) {
  Element rule{"AcRule", "", "", {{"Active", active, "", {}}, {"MAC", mac, "", {}}}};
  Find("Device/" + radio + "/AccessControl").children.push_back(rule);
  return *this;
}

void Document::Append(const Element& element, std::string& text) {
  if (!element.markup.empty()) {
    text += element.markup;
    return;
  }
  text += "<" + element.name + ">" + element.value;
  for (const Element& child : element.children) {
    Append(child, text);
  }
  text += "</" + element.name + ">\n";
}

void Document::AddPaths(const Element& element, const std::string& prefix,
                        std::vector<std::string>& paths) {
  for (const Element& child : element.children) {
    const std::string path = prefix + child.name;
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
      paths.push_back(path);
    }
    AddPaths(child, path + "/", paths);
  }
}

std::vector<std::string> Document::Paths() const {
  std::vector<std::string> paths;
  AddPaths(root_, "", paths);
  return paths;
}

std::string Document::Body() const {
  std::string text;
  for (const Element& child : root_.children) {
    Append(child, text);
  }
  return text;
}

std::string Document::Text() const {
  return "<?xml version=\"1.0\" ?>\n<root>\n" + Body() + "</root>\n";
}

Document SampleDocument() { return Build(false); }

Document Version10Document() { return Build(true); }

void UseHardware(Document& document, const std::string& hardware) {
  const std::string uplink = "Device/UpLinkConnection/";
  document.Set(uplink + "HardwareType", hardware);
  if (hardware == "ADSL" || hardware == "VDSL" || hardware == "DSL") {
    document.Set(uplink + "DSL/CountryName", "Norway").Set(uplink + "DSL/IspName", "Fjord DSL");
    document.Set(uplink + "DSL/VPI", "8").Set(uplink + "DSL/VCI", "35");
    document.Set(uplink + "DSL/EncapsulationMode", "LLC");
  } else if (hardware == "WWanAPN") {
    document.Set(uplink + "APN/CountryName", "Sweden").Set(uplink + "APN/IspName", "Berg Mobile");
  } else if (hardware == "WWan802.11") {
    const std::string site = uplink + "ExtenderSite/";
    document.Set(site + "Survey", "0").Set(site + "ConnRefSiteBSSID", "02:00:00:00:99:01");
    document.Set(site + "WirelessType", "2.4").Set(site + "WirelessName", "Upstream");
    document.Set(site + "EncryptionKey", "upstream-key");
  }
}

void UseStatic(Document& document) {
  const std::string uplink = "Device/UpLinkConnection/";
  document.Set(uplink + "ConnType", "Static").Set(uplink + "IP", "10.0.0.2");
  document.Set(uplink + "NetMask", "255.255.255.0").Set(uplink + "Gateway", "10.0.0.1");
  document.Set(uplink + "DNS", "10.0.0.3");
}

void UsePppoe(Document& document) {
  const std::string uplink = "Device/UpLinkConnection/";
  document.Set(uplink + "ConnType", "PPPoE").Set(uplink + "LoginUserName", "line-user");
  document.Set(uplink + "LoginPassword", "line-pass");
}

}  // namespace kio::test
