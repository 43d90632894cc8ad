#include "schema.h"

#include <vector>

#include "document_text.h"
#include "elements.h"

namespace kioctl {
namespace {

std::string KindOf(const std::string& version, bool firmware_list) {
  return firmware_list ? "firmware list" : "settings " + version;
}

// A word in any case: the device does not look at it.
std::string AnyCase(const std::string& word) {
  std::string pattern;
  for (const char c : word) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalpha(byte) != 0) {
      pattern +=
          {'[', static_cast<char>(std::toupper(byte)), static_cast<char>(std::tolower(byte)), ']'};
    } else {
      pattern += (c == '.' ? "\\" : "") + std::string(1, c);
    }
  }
  return pattern;
}

std::string DataOf(const Element& element) {
  const auto parameter = [](const std::string& name, const std::string& text) {
    return "<param name=\"" + name + "\">" + EncodeEntities(text) + "</param>";
  };
  if (!element.words.empty()) {
    std::string pattern;
    for (const std::string& word : element.words) {
      pattern += (pattern.empty() ? "" : "|") + AnyCase(word);
    }
    return "<data type=\"string\">" + parameter("pattern", "\\s*(" + pattern + ")\\s*") + "</data>";
  }
  if (element.type == "integer") {
    std::string bounds;
    if (element.minimum) {
      bounds = parameter("minInclusive", std::to_string(*element.minimum)) +
               parameter("maxInclusive", std::to_string(*element.maximum));
    }
    return "<data type=\"integer\">" + bounds + "</data>";
  }
  return "<text/>";
}

class Grammar {
 public:
  explicit Grammar(const std::vector<Element>& elements) : elements_(elements) {}

  // What stands in a block; "" is the root.
  std::string Block(const std::string& path, int depth) const {
    const std::string margin(static_cast<size_t>(depth), ' ');
    std::string text;
    for (const Element& element : elements_) {
      if (element.parent == path) {
        text += Child(element, depth + 1);
      }
    }
    // Of some blocks nothing is read.
    return text.empty() ? margin + "<empty/>\n"
                        : margin + "<interleave>\n" + text + margin + "</interleave>\n";
  }

 private:
  std::string Child(const Element& element, int depth) const {
    const std::string margin(static_cast<size_t>(depth), ' ');
    const bool is_repeated = element.when.find(" times") != std::string::npos;
    // Whether a condition of the device holds is not known here.
    const bool is_certain =
        element.is_required && (element.when.empty() || element.when == "always");
    const char* const around = is_repeated ? "zeroOrMore" : is_certain ? nullptr : "optional";
    std::string text;
    if (around != nullptr) {
      text += margin + "<" + around + ">\n";
    }
    text += margin + " <element name=\"" + element.name + "\">";
    text +=
        element.is_block ? "\n" + Block(element.path, depth + 2) + margin + " " : DataOf(element);
    text += "</element>\n";
    if (around != nullptr) {
      text += margin + "</" + around + ">\n";
    }
    return text;
  }

  const std::vector<Element>& elements_;
};

}  // namespace

std::string SchemaAsRelaxNg(const std::string& version, bool firmware_list) {
  const std::string kind = KindOf(version, firmware_list);
  const std::vector<Element> elements = ElementsOf(kind);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- " + kind +
         ": made by kioctl schema -->\n"
         "<element name=\"root\" xmlns=\"http://relaxng.org/ns/structure/1.0\"\n"
         "         datatypeLibrary=\"http://www.w3.org/2001/XMLSchema-datatypes\">\n" +
         Grammar(elements).Block("", 1) + "</element>\n";
}

std::string SchemaAsJson(const std::string& version, bool firmware_list) {
  constexpr int kIndent = 2;
  const std::string kind = KindOf(version, firmware_list);
  nlohmann::json rows = nlohmann::json::array();
  for (const Element& element : ElementsOf(kind)) {
    nlohmann::json row = {
        {"path", element.path},   {"block", element.is_block}, {"required", element.is_required},
        {"when", element.when},   {"type", element.type},      {"range", element.range},
        {"words", element.words}, {"node", element.node},      {"variable", element.variable},
        {"fault", element.fault}, {"meaning", element.meaning}};
    if (element.limit > 0) {
      row["limit"] = element.limit;
    }
    if (element.minimum) {
      row["minimum"] = *element.minimum;
      row["maximum"] = *element.maximum;
    }
    rows.push_back(std::move(row));
  }
  return nlohmann::json({{"document", kind}, {"elements", rows}}).dump(kIndent) + "\n";
}

}  // namespace kioctl
