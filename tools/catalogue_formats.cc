#include <strings.h>

#include <string_view>

#include "catalogue.h"
#include "json.h"

namespace kio::tools {
namespace {

using kiohost::JsonString;

const char* KindWord(CatalogueEntry::Kind kind) {
  switch (kind) {
    case CatalogueEntry::Kind::kText:
      return "text";
    case CatalogueEntry::Kind::kInteger:
      return "integer";
    case CatalogueEntry::Kind::kKeyword:
      return "keyword";
  }
  return "";
}

const char* JsonBool(bool value) { return value ? "true" : "false"; }

std::string JsonStringOrNull(const std::string& text) {
  return text.empty() ? "null" : JsonString(text);
}

std::string JsonWords(const std::vector<std::string>& words) {
  std::string json;
  for (const std::string& word : words) {
    json += (json.empty() ? "" : ", ") + JsonString(word);
  }
  return "[" + json + "]";
}

std::string JsonConditions(const std::vector<CatalogueEntry::Condition>& conditions) {
  std::string json;
  for (const CatalogueEntry::Condition& condition : conditions) {
    json += std::string(json.empty() ? "" : ", ") + "{\"node\": " + JsonString(condition.node) +
            (condition.is_one ? ", \"is\": " : ", \"not\": ") + JsonWords(condition.texts) + "}";
  }
  return "[" + json + "]";
}

// The members of a variable's object, one a line.
class JsonMembers {
 public:
  void Add(const char* name, const std::string& json) {
    text_ += std::string(text_.empty() ? "" : ",\n") + "      " + JsonString(name) + ": " + json;
  }
  std::string Object() const { return "    {\n" + text_ + "\n    }"; }

 private:
  std::string text_;
};

std::string EntryJson(const CatalogueEntry& entry) {
  JsonMembers members;
  members.Add("name", JsonString(entry.name));
  members.Add("documentPath", JsonString(entry.document_path));
  members.Add("storeNode", JsonStringOrNull(entry.store_node));
  members.Add("pathAnswer", JsonStringOrNull(entry.path_answer));
  members.Add("kind", JsonString(KindWord(entry.kind)));
  if (entry.kind != CatalogueEntry::Kind::kInteger) {
    members.Add("capacity", std::to_string(entry.capacity));
  }
  if (entry.kind == CatalogueEntry::Kind::kKeyword) {
    members.Add("words", JsonWords(entry.words));
  }
  members.Add("access", std::string("{\"read\": true, \"readPath\": ") +
                            JsonBool(!entry.path_answer.empty()) +
                            ", \"write\": " + JsonBool(entry.is_writable) +
                            ", \"validate\": " + JsonBool(entry.is_writable) + "}");
  members.Add("writeNeedsConfigurable", JsonBool(entry.needs_configurable));
  members.Add("configurableWhen", JsonConditions(entry.configurable_when));
  members.Add("check", JsonStringOrNull(entry.check));
  members.Add("ruleIn", JsonStringOrNull(entry.rule_in));
  if (entry.has_range) {
    members.Add("range", "{\"minimum\": " + std::to_string(entry.minimum) +
                             ", \"maximum\": " + std::to_string(entry.maximum) + "}");
  }
  members.Add("faultPath", JsonStringOrNull(entry.fault_path));
  if (entry.is_indexed) {
    members.Add("index", "{\"first\": 0, \"last\": " + std::to_string(entry.last_index) +
                             ", \"count\": " + JsonString(entry.index_count) + "}");
  }
  return members.Object();
}

constexpr std::string_view kHead =
    R"(# The variables

Made from the library's tables; do not edit. `cmake --build --preset dev --target reference_docs`
makes this page and `variables.json` anew.

`??` in a name stands for the two digits of an index, `(??+1)` in a path for that index and one. A
path in italics is what a read of the path gives where that is not the node that the value comes
from. All variables can be read. Those with a check can be set and validated; those marked * only
while their section is configurable (code 1 otherwise).

| Variable | Document path | Store node | Kind | Check |
|---|---|---|---|---|
)";

std::string Code(const std::string& text) { return text.empty() ? "" : "`" + text + "`"; }

std::string KindCell(const CatalogueEntry& entry) {
  switch (entry.kind) {
    case CatalogueEntry::Kind::kText:
      return "text, " + std::to_string(entry.capacity);
    case CatalogueEntry::Kind::kInteger:
      return "integer";
    case CatalogueEntry::Kind::kKeyword:
      break;
  }
  std::string cell;
  for (const std::string& word : entry.words) {
    cell += (cell.empty() ? "" : ", ") + (word.empty() ? "the empty word" : Code(word));
  }
  return cell;
}

// Names of nodes compare without regard to case.
bool IsSameNode(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) == 0;
}

std::string NodeCell(const CatalogueEntry& entry) {
  std::string cell = Code(entry.store_node);
  if (entry.path_answer.empty()) {
    return cell + "; *the value*";
  }
  if (!IsSameNode(entry.path_answer, entry.store_node)) {
    cell += (cell.empty() ? "*" : "; *") + Code(entry.path_answer) + "*";
  }
  return cell;
}

std::string CheckCell(const CatalogueEntry& entry) {
  if (!entry.is_writable) {
    return "read only";
  }
  return entry.check + (entry.needs_configurable ? " *" : "");
}

}  // namespace

std::string CatalogueJson(const std::vector<CatalogueEntry>& entries) {
  std::string list;
  for (const CatalogueEntry& entry : entries) {
    list += (list.empty() ? "" : ",\n") + EntryJson(entry);
  }
  return "{\n  \"variables\": [\n" + list + "\n  ]\n}\n";
}

std::string CatalogueMarkdown(const std::vector<CatalogueEntry>& entries) {
  std::string page(kHead);
  for (const CatalogueEntry& entry : entries) {
    page += "| " + Code(entry.name) + " | " + Code(entry.document_path) + " | " + NodeCell(entry) +
            " | " + KindCell(entry) + " | " + CheckCell(entry) + " |\n";
  }
  return page;
}

}  // namespace kio::tools
