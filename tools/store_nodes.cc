#include "store_nodes.h"

#include <algorithm>
#include <cctype>

#include "document_elements.h"
#include "field_text.h"
#include "kioapp/xml.h"
#include "meanings.h"
#include "node_uses.h"
#include "settings/record.h"

namespace kio::tools {
namespace {

using settings::Load;
using settings::Snapshot;
using settings::Write;
using variables::Variable;

std::string LowerCase(std::string path) {
  std::transform(path.begin(), path.end(), path.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return path;
}

void AddOnce(std::vector<std::string>& list, const std::string& text) {
  if (!text.empty() && std::find(list.begin(), list.end(), text) == list.end()) {
    list.push_back(text);
  }
}

std::string AbsentValue(const Field& field) {
  switch (field.load) {
    case Load::kNever:
      return field.member.type == settings::Member::Type::kText ? "empty" : "0";
    case Load::kInteger:
      return std::to_string(field.absent);
    case Load::kIsOne:
    case Load::kCloningLevel:
      return "0";
    case Load::kIsNotZero:
      return "1";
    case Load::kRule:
      return "one printable character or more";
    case Load::kText:
    case Load::kTrimmed:
      return "empty";
  }
  return {};
}

std::string ValueOf(const Field& field, const SectionInstance& instance) {
  switch (field.load) {
    case Load::kIsOne:
      return "1, or anything else for 0";
    case Load::kIsNotZero:
      return "0, or anything else for 1";
    case Load::kCloningLevel:
      return "0 to 2";
    case Load::kRule:
      return TypeOf(field) + "; a rule";
    default:
      break;
  }
  const std::string words = WordList(field);
  return TypeOf(field) + (words.empty() ? "" : "; " + words) +
         (words.empty() && !RangeOf(field, instance).empty() ? "; " + RangeOf(field, instance)
                                                             : "");
}

class NodeList {
 public:
  void AddField(SectionId section, const Field& field) {
    const SectionInstance instance{.section = section};
    StoreNode& node = Node(NodePrefix(instance) + Text(field.node));
    node.field = &field;
    node.section = instance;
    node.meaning = MeaningOf(section, field);
    node.value = ValueOf(field, instance);
    node.absent = AbsentValue(field);
    if (field.load != Load::kNever) {
      AddOnce(node.reads, field.snapshot == Snapshot::kEvery ? "snapshot" : "full snapshot");
    }
    if (field.write != Write::kNever) {
      AddOnce(node.reads, "apply");
      AddOnce(node.writes, "app: apply");
    }
    AddVariable(node, VariableOf(section, field));
  }

  void AddLive(SectionId section, const LiveNode& live) {
    const Variable* const variable = VariableOf(section, live);
    const bool is_indexed = section == SectionId::kSurveySite;
    std::string path = live.node.empty() ? VariablePath(*variable, {.section = section}, is_indexed)
                                         : Text(live.node);
    if (is_indexed) {
      const std::size_t begin = path.find('(');
      path.replace(begin, path.find(')') + 1 - begin, "{n}");
    }
    StoreNode& node = Node(path);
    if (node.meaning.empty()) {
      const bool is_text =
          live.kind == LiveNode::Kind::kText || live.kind == LiveNode::Kind::kAddress;
      node.meaning = MeaningOf(section, live);
      node.value = is_text ? "text, 127" : "integer";
      node.absent = is_text ? "empty" : live.kind == LiveNode::Kind::kNumber ? "-1" : "1";
    }
    AddOnce(node.reads, "variable");
    AddVariable(node, variable);
  }

  void AddUse(const NodeUse& use) {
    StoreNode& node = Node(use.path);
    if (node.meaning.empty()) {
      node.meaning = use.meaning;
      node.value = use.value;
      node.absent = use.absent;
    }
    AddOnce(node.reads, use.read);
    AddOnce(node.writes, use.write);
    node.is_own |= use.is_own;
  }

  void AddElement(const DocumentElement& element) {
    AddOnce(Node(element.node).elements, element.path);
  }

  // Cloning keeps the texts of a radio that a document holds.
  void AddClonedText(const Field& field) {
    StoreNode& node = Node(settings::kClonedSiteNode + Text(field.node));
    node.meaning = Text(field.element) + " of that network.";
    node.value = TypeOf(field);
    node.absent = "not read";
    AddOnce(node.writes, "library: cloning");
  }

  [[nodiscard]] std::vector<StoreNode> Sorted() const {
    std::vector<StoreNode> nodes = nodes_;
    std::sort(nodes.begin(), nodes.end(),
              [](const StoreNode& a, const StoreNode& b) { return a.path < b.path; });
    return nodes;
  }

 private:
  StoreNode& Node(const std::string& path) {
    const std::string folded = WithPlaceholders(LowerCase(path));
    const auto found = std::find_if(nodes_.begin(), nodes_.end(), [&folded](const StoreNode& node) {
      return node.path == folded;
    });
    return found != nodes_.end() ? *found : nodes_.emplace_back(StoreNode{.path = folded});
  }

  static void AddVariable(StoreNode& node, const Variable* variable) {
    if (variable != nullptr) {
      AddOnce(node.variables, NamePrefix(variable->section(), 0) + Text(variable->name()));
    }
  }

  std::vector<StoreNode> nodes_;
};

std::string WriterCell(const StoreNode& node) {
  // The host supplies what the library reads and does not write for itself.
  const std::string host = node.reads.empty() || node.is_own ? "" : "host";
  return Joined({host, Joined(node.writes, "; ")}, "; ");
}

std::string CodeList(const std::vector<std::string>& names) {
  std::vector<std::string> codes;
  codes.reserve(names.size());
  for (const std::string& name : names) {
    codes.push_back(Code(name));
  }
  return Joined(codes, ", ");
}

}  // namespace

std::vector<StoreNode> ListStoreNodes() {
  NodeList list;
  for (const Table<Field>& table : kFieldTables) {
    for (const Field& field : table) {
      if (!field.node.empty()) {
        list.AddField(table.section, field);
      }
    }
  }
  for (const LiveNode& live : kLiveNodes) {
    list.AddLive(live.section, live);
  }
  for (const DocumentKind kind : {DocumentKind::kVersion11, DocumentKind::kVersion10}) {
    for (const DocumentElement& element : ListDocumentElements(kind)) {
      if (!element.node.empty()) {
        list.AddElement(element);
      }
    }
  }
  for (const Field& field : settings::kWlanFields) {
    if (field.group != settings::Group::kDeviceOnly &&
        field.member.type == settings::Member::Type::kText) {
      list.AddClonedText(field);
    }
  }
  for (const NodeUse& use : kNodeUses) {
    list.AddUse(use);
  }
  return list.Sorted();
}

std::string StoreTable(const std::vector<StoreNode>& nodes) {
  std::string table =
      "| Node | Meaning | Value | Absent | Read | Written by | Element | Variable |\n"
      "|---|---|---|---|---|---|---|---|\n";
  for (const StoreNode& node : nodes) {
    table += "| " + Code(node.path) + " | " + node.meaning + " | " + node.value + " | " +
             node.absent + " | " + Joined(node.reads, ", ") + " | " + WriterCell(node) + " | " +
             CodeList(node.elements) + " | " + CodeList(node.variables) + " |\n";
  }
  return table;
}

}  // namespace kio::tools
