// The elements of the documents that the library reads, in the order in which it reads them.
#ifndef TOOLS_DOCUMENT_ELEMENTS_H
#define TOOLS_DOCUMENT_ELEMENTS_H

#include <string>
#include <vector>

#include "settings/field.h"

namespace kio::tools {

enum class DocumentKind { kVersion11, kVersion10, kFirmwareList };

struct DocumentElement {
  std::string path = {};  // below the root; "{band}" stands for 2.4 and 5
  bool is_required = true;
  std::string when = {};  // the condition for reading it, beside that of its block
  bool is_block = false;
  std::string type = {};
  std::string range = {};
  std::string words = {};
  std::size_t limit = 0;  // characters that are taken; 0 for a number or a block
  std::string node = {};
  std::string variable = {};
  std::string fault = {};  // how result documents name a faulty value
  std::string meaning = {};
  const settings::Field* field = nullptr;  // null for a block and in firmware lists
};

std::vector<DocumentElement> ListDocumentElements(DocumentKind kind);

// The elements of all kinds of documents, as JSON.
std::string DocumentJson();

// The table of the elements, in Markdown.
std::string DocumentTable(const std::vector<DocumentElement>& elements);

}  // namespace kio::tools

#endif  // TOOLS_DOCUMENT_ELEMENTS_H
