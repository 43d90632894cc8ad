#include "elements.h"

#include <strings.h>

#include <algorithm>
#include <string_view>

#include "embedded.h"

namespace kioctl {
namespace {

using nlohmann::json;

void Replace(std::string* text, const std::string& from, const std::string& to) {
  for (size_t at = text->find(from); at != std::string::npos; at = text->find(from, at)) {
    text->replace(at, from.size(), to);
  }
}

Element ElementOf(const json& row, const std::string& band) {
  Element element;
  const auto text = [&](const char* member) {
    std::string value = row.value(member, "");
    Replace(&value, "{band}", band);
    return value;
  };
  element.path = text("path");
  const size_t slash = element.path.rfind('/');
  element.parent = slash == std::string::npos ? "" : element.path.substr(0, slash);
  element.name = element.path.substr(slash == std::string::npos ? 0 : slash + 1);
  element.is_block = row.value("block", false);
  element.is_required = row.value("required", false);
  element.when = text("when");
  element.type = text("type");
  element.limit = row.value("limit", 0U);
  element.range = text("range");
  element.words = row.value("words", std::vector<std::string>());
  if (row.contains("minimum")) {
    element.minimum = row["minimum"].get<int>();
    element.maximum = row["maximum"].get<int>();
  }
  element.node = text("node");
  element.variable = text("variable");
  if (band == "5") {
    Replace(&element.variable, "rss_Wl2_", "rss_Wl5_");
  }
  element.fault = text("fault");
  element.meaning = text("meaning");
  return element;
}

}  // namespace

bool Element::IsSecret() const {
  return name == "DevicePwd" || name == "LoginPassword" || name == "EncryptionKey";
}

// `when` is then such as "`ConnType` is PPPoE or PPPoA".
std::string Element::Governor() const {
  const size_t end = when.find("` is ");
  if (!when.starts_with('`') || when.starts_with("`/") || end == std::string::npos) {
    return "";
  }
  return (parent.empty() ? "" : parent + "/") + when.substr(1, end - 1);
}

std::vector<std::string> Element::GovernedBy() const {
  constexpr std::string_view kIs = "` is ";
  std::vector<std::string> values;
  const size_t is = when.find(kIs);
  if (Governor().empty()) {
    return values;
  }
  std::string list = when.substr(is + kIs.size());
  list = list.substr(0, list.find(';'));
  for (size_t begin = 0; begin < list.size();) {
    const size_t end = std::min(list.find_first_of(" ,", begin), list.size());
    const std::string value = list.substr(begin, end - begin);
    if (!value.empty() && value != "or") {
      values.push_back(value);
    }
    begin = end + 1;
  }
  return values;
}

const json& AllElements() {
  static const json all = json::parse(kElementsJson);
  return all;
}

std::vector<Element> ElementsOf(const std::string& kind) {
  // All rows of a radio stand together, and are listed for one radio after the other.
  std::vector<Element> elements;
  std::vector<Element> second_radio;
  const auto end_radios = [&] {
    elements.insert(elements.end(), second_radio.begin(), second_radio.end());
    second_radio.clear();
  };
  for (const json& row : AllElements().at(kind)) {
    const bool is_of_radio = row.value("path", "").find("{band}") != std::string::npos;
    if (!is_of_radio) {
      end_radios();
    }
    elements.push_back(ElementOf(row, "2.4"));
    if (is_of_radio) {
      second_radio.push_back(ElementOf(row, "5"));
    }
  }
  end_radios();
  return elements;
}

bool SameName(const std::string& one, const std::string& other) {
  return strcasecmp(one.c_str(), other.c_str()) == 0;
}

const Element* FindElement(const std::vector<Element>& elements, const std::string& path) {
  for (const Element& element : elements) {
    if (SameName(element.path, path)) {
      return &element;
    }
  }
  return nullptr;
}

}  // namespace kioctl
