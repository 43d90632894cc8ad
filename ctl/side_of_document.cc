// A settings document as one of the two that are compared. The library's own search reads it.
#define KIOAPP_NO_SHORT_NAMES
#include <kioapp/xml.h>

#include <cstdlib>
#include <vector>

#include "catalogue.h"
#include "document_text.h"
#include "failure.h"
#include "lint.h"
#include "side.h"

namespace kioctl {
namespace {

constexpr size_t kUsualLimit = 127;
constexpr size_t kRulesRead = 40;
constexpr char kNameServer[] = "/uplink/dns";

// The text of an element in a block, as a device reads it: cut, and its entities decoded.
std::optional<std::string> TextIn(const std::string& document, const Span& block,
                                  const Element& element) {
  std::vector<char> text((element.limit > 0 ? element.limit : kUsualLimit) + 1);
  // The library only reads here; its interface is older than "const".
  char* const begin = const_cast<char*>(document.data()) + block.begin;
  if (GetXmlKeyStrValue_(begin, static_cast<int>(block.length), element.name.c_str(), text.data(),
                         static_cast<int>(text.size())) != 1) {
    return std::nullopt;
  }
  constexpr int kDecimal = 10;
  return element.type == "integer" ? std::to_string(std::strtol(text.data(), nullptr, kDecimal))
                                   : std::string(text.data());
}

void AddRules(const std::string& document, const std::vector<Element>& elements,
              const std::string& band, Side* side) {
  const std::string rule = "Device/Wireless" + band + "/AccessControl/AcRule";
  const Element* const active = FindElement(elements, rule + "/Active");
  const Element* const address = FindElement(elements, rule + "/MAC");
  if (active == nullptr || address == nullptr) {
    return;  // version 1.0 has no rules
  }
  size_t count = 0;
  for (const Span& block : FindAll(document, rule)) {
    if (++count > kRulesRead) {
      break;
    }
    side->AddRule(band, TextIn(document, block, *address).value_or(""),
                  TextIn(document, block, *active).value_or("0"));
  }
}

}  // namespace

Side SideOfDocument(const std::string& name, const std::string& document) {
  const std::optional<Span> root = FindContent(document, std::nullopt, "root");
  if (!root) {
    throw Failure{ExitCode::kLocal, name + " is no settings document: it has no root element",
                  "name a router, an archive, a profile or a settings document"};
  }
  Side side{.kind = Side::Kind::kDocument, .name = name};
  const std::vector<Element> elements = ElementsFor(document);
  std::vector<std::pair<std::string, std::string>> paths;
  for (const Element& element : elements) {
    if (element.is_block || element.parent.ends_with("/AcRule")) {
      continue;
    }
    const std::vector<Span> blocks =
        element.parent.empty() ? std::vector<Span>{*root} : FindAll(document, element.parent);
    for (const Span& block : blocks) {
      const std::optional<std::string> text = TextIn(document, block, element);
      if (text && side.held.emplace(KeyOf(element), Held{.text = text}).second) {
        paths.emplace_back(KeyOf(element), element.path);
      }
    }
  }
  AddRules(document, elements, "2.4", &side);
  AddRules(document, elements, "5", &side);
  MarkUnused(&side);
  // In version 1.0 a site stands at another place.
  for (const auto& [key, path] : paths) {
    side.held[key].unused = WhyUnused(side, path);
  }
  const auto server = side.held.find(kNameServer);
  if (server != side.held.end() && server->second.text == "") {
    server->second.text = "8.8.8.8";
  }
  return side;
}

}  // namespace kioctl
