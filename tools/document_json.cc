// The elements of documents for programs.
#include <nlohmann/json.hpp>

#include "document_elements.h"
#include "sections.h"

namespace kio::tools {
namespace {

using Json = nlohmann::ordered_json;

Json ElementJson(const DocumentElement& element) {
  Json json = {{"path", element.path},
               {"block", element.is_block},
               {"required", element.is_required},
               {"when", element.when},
               {"type", element.type}};
  const auto add = [&json](const char* member, const std::string& text) {
    if (!text.empty()) {
      json[member] = text;
    }
  };
  if (element.limit > 0) {
    json["limit"] = element.limit;
  }
  add("range", element.range);
  if (element.field != nullptr && element.field->has_words()) {
    json["words"] = WordsOf(element.field->words);
  }
  if (element.field != nullptr && element.field->check == settings::Check::kInRange) {
    json["minimum"] = element.field->low;
    json["maximum"] = element.field->high;
  }
  add("node", element.node);
  add("variable", element.variable);
  add("fault", element.fault);
  add("meaning", element.meaning);
  return json;
}

Json ListJson(DocumentKind kind) {
  Json list = Json::array();
  for (const DocumentElement& element : ListDocumentElements(kind)) {
    list.push_back(ElementJson(element));
  }
  return list;
}

}  // namespace

std::string DocumentJson() {
  constexpr int kIndent = 1;
  const Json json = {{"settings 1.1", ListJson(DocumentKind::kVersion11)},
                     {"settings 1.0", ListJson(DocumentKind::kVersion10)},
                     {"firmware list", ListJson(DocumentKind::kFirmwareList)}};
  return json.dump(kIndent) + "\n";
}

}  // namespace kio::tools
