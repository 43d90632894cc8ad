#include "conform/document.h"

#include <algorithm>
#include <cctype>

namespace kioctl::conform {
namespace {

constexpr char kUplink[] = "UpLinkConnection";
constexpr char kSwitch[] = "Configurable";

// The variable with the address of a radio.
std::string AddressOf(const Facts& facts, const std::string& radio) {
  const auto value =
      facts.values.find(radio == "Wireless5" ? "rss_Wl5_WirelessBSSID" : "rss_Wl2_WirelessBSSID");
  return value == facts.values.end() ? "" : value->second;
}

}  // namespace

std::string XmlText(const std::string& text) {
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

std::vector<std::string> RadiosOf(const Facts& facts) {
  std::vector<std::string> radios;
  for (const char* const name : {"Wireless2.4", "Wireless5"}) {
    if (facts.TakesRadios() && !facts.settings["Device"][name].IsAbsent()) {
      radios.emplace_back(name);
    }
  }
  return radios;
}

Document::Document(const Facts& facts) : root_{"root", "", {}} {
  const size_t dot = facts.documents.find('.');
  Set("specVersion/major", facts.documents.substr(0, dot));
  Set("specVersion/minor", dot == std::string::npos ? "0" : facts.documents.substr(dot + 1));
  // A device that finds no switch of its own takes that of the first section.
  Set("Device/Configurable", "1");
  const Value device = facts.settings["Device"];
  for (const std::string& name : device.Names()) {
    if (device[name].Is(Value::Kind::kText)) {
      Set("Device/" + name, device[name].Text());
    }
  }
  Set(std::string("Device/") + kUplink + "/" + kSwitch, "0");
  if (facts.documents == "1.0") {
    Set("Device/ExtenderEnbl", "0");
  }
  const std::vector<std::string> radios = RadiosOf(facts);
  for (const std::string& name : device.Names()) {
    if (name == kUplink || !device[name].Is(Value::Kind::kObject)) {
      continue;
    }
    Element* const block = Make("Device/" + name);
    if (!name.starts_with("Wireless")) {
      Fill(device[name], block);
      continue;
    }
    const bool is_whole = std::find(radios.begin(), radios.end(), name) != radios.end() &&
                          (facts.documents == "1.0" || !AddressOf(facts, name).empty());
    if (is_whole) {
      Fill(device[name], block);
      Set("Device/" + name + "/WirelessBSSID", AddressOf(facts, name));
    } else {
      Set("Device/" + name + "/" + kSwitch, "0");
    }
  }
}

Document& Document::AddUplink(const Facts& facts) {
  Element* const uplink = Make(std::string("Device/") + kUplink);
  uplink->children.clear();
  Fill(facts.settings["Device"][kUplink], uplink);
  Set(std::string("Device/") + kUplink + "/ExtenderSite/Survey", "0");
  return *this;
}

void Document::Fill(const Value& value, Element* element) {
  for (const std::string& name : value.Names()) {
    const Value part = value[name];
    const size_t count = part.Is(Value::Kind::kList) ? part.size() : 1;
    for (size_t i = 0; i < count; ++i) {
      const Value one = part.Is(Value::Kind::kList) ? part.At(i) : part;
      element->children.push_back({name, one.Text(), {}});
      Fill(one, &element->children.back());
    }
  }
}

Document::Element* Document::ChildOf(Element* element, const std::string& name) {
  const auto child = std::find_if(element->children.begin(), element->children.end(),
                                  [&name](const Element& one) { return one.name == name; });
  return child == element->children.end() ? nullptr : &*child;
}

const Document::Element* Document::Find(const std::string& path) const {
  const Element* element = &root_;
  for (size_t at = 0; at <= path.size();) {
    const size_t end = std::min(path.find('/', at), path.size());
    const std::string name = path.substr(at, end - at);
    const auto child = std::find_if(element->children.begin(), element->children.end(),
                                    [&name](const Element& one) { return one.name == name; });
    if (child == element->children.end()) {
      return nullptr;
    }
    element = &*child;
    at = end + 1;
  }
  return element;
}

Document::Element* Document::Make(const std::string& path) {
  Element* element = &root_;
  for (size_t at = 0; at <= path.size();) {
    const size_t end = std::min(path.find('/', at), path.size());
    const std::string name = path.substr(at, end - at);
    Element* child = ChildOf(element, name);
    if (child == nullptr) {
      element->children.push_back({name, "", {}});
      child = &element->children.back();
    }
    element = child;
    at = end + 1;
  }
  return element;
}

Document& Document::Set(const std::string& path, const std::string& text) {
  Make(path)->text = text;
  return *this;
}

Document& Document::Remove(const std::string& path) {
  const size_t slash = path.rfind('/');
  Element* const block = Make(path.substr(0, slash));
  std::erase_if(block->children,
                [&](const Element& one) { return one.name == path.substr(slash + 1); });
  return *this;
}

std::string Document::Text(const std::string& path) const {
  const Element* const element = Find(path);
  return element == nullptr ? "" : element->text;
}

void Document::ReverseBelow(Element* element) {
  std::reverse(element->children.begin(), element->children.end());
  std::stable_partition(element->children.begin(), element->children.end(),
                        [](const Element& one) { return one.children.empty(); });
  for (Element& child : element->children) {
    ReverseBelow(&child);
  }
}

Document& Document::Reverse() {
  ReverseBelow(&root_);
  return *this;
}

void Document::LowerBelow(Element* element) {
  for (char& c : element->name) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  for (Element& child : element->children) {
    LowerBelow(&child);
  }
}

Document& Document::LowerNames() {
  for (Element& child : root_.children) {
    LowerBelow(&child);
  }
  return *this;
}

void Document::Append(const Element& element, std::string* xml) {
  *xml += "<" + element.name + ">" + XmlText(element.text);
  for (const Element& child : element.children) {
    *xml += "\n";
    Append(child, xml);
  }
  *xml += "</" + element.name + ">";
}

std::string Document::Xml() const {
  std::string xml = "<?xml version=\"1.0\" ?>\n";
  Append(root_, &xml);
  return xml + "\n";
}

}  // namespace kioctl::conform
