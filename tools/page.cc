#include "page.h"

#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include "action_table.h"
#include "document_elements.h"
#include "known_nodes.h"
#include "store_nodes.h"

namespace kio::tools {
namespace {

std::optional<std::string> ReadText(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return std::nullopt;
  }
  return text.str();
}

const std::map<std::string, std::function<std::string()>>& Tables() {
  static const std::map<std::string, std::function<std::string()>> tables = {
      {"actions", [] { return ActionTable(ListActions()); }},
      {"document 1.0",
       [] { return DocumentTable(ListDocumentElements(DocumentKind::kVersion10)); }},
      {"document 1.1",
       [] { return DocumentTable(ListDocumentElements(DocumentKind::kVersion11)); }},
      {"firmware list",
       [] { return DocumentTable(ListDocumentElements(DocumentKind::kFirmwareList)); }},
      {"nodes", [] { return StoreTable(ListStoreNodes()); }},
  };
  return tables;
}

// What replaces the line "@@MARK"; null for an unknown mark or a file that cannot be read.
std::optional<std::string> Replacement(const std::string& source_dir, const std::string& mark) {
  const std::string file_mark = "file ";
  if (mark.compare(0, file_mark.size(), file_mark) == 0) {
    return ReadText(source_dir + "/" + mark.substr(file_mark.size()));
  }
  const auto table = Tables().find(mark);
  return table == Tables().end() ? std::nullopt : std::optional(table->second());
}

}  // namespace

std::optional<std::string> MakePage(const std::string& source_dir, const std::string& name,
                                    std::string* error) {
  if (name == "known_nodes.inc") {
    return KnownNodes(ListStoreNodes(), error);
  }
  if (name == "elements.json") {
    return DocumentJson();
  }
  const std::string file = source_dir + "/tools/pages/" + name + ".md";
  const std::optional<std::string> text = ReadText(file);
  if (!text) {
    *error = file + " cannot be read";
    return std::nullopt;
  }
  std::string page;
  std::istringstream lines(*text);
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, 2, "@@") != 0) {
      page += line + "\n";
      continue;
    }
    const std::optional<std::string> replacement = Replacement(source_dir, line.substr(2));
    if (!replacement) {
      (*error = file).append(": nothing stands for ").append(line);
      return std::nullopt;
    }
    page += *replacement;
  }
  return page;
}

}  // namespace kio::tools
