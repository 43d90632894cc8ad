// The list of all variables, made from the library's own tables.
#ifndef TOOLS_CATALOGUE_H
#define TOOLS_CATALOGUE_H

#include <cstddef>
#include <string>
#include <vector>

namespace kio::tools {

// A variable. Those of an access rule or a site are listed once, with "??" for the two digits of
// the index.
struct CatalogueEntry {
  enum class Kind { kText, kInteger, kKeyword };

  // Holds when the text of the node is one of these, or when it is none of them. A node that is
  // absent has no text.
  struct Condition {
    std::string node;
    bool is_one = true;
    std::vector<std::string> texts;
  };

  std::string name;
  std::string document_path;
  // The node that the value is loaded from; empty when there is no single one. "??" or "(??+N)"
  // stands for the instance of an index.
  std::string store_node;
  // What a read of the path gives; empty when it gives the value.
  std::string path_answer;

  Kind kind = Kind::kText;
  std::size_t capacity = 0;        // characters of a text
  std::vector<std::string> words;  // of a keyword

  bool is_writable = false;                  // set and validated; otherwise only read
  bool needs_configurable = false;           // set only while its section is configurable
  std::vector<Condition> configurable_when;  // all of them hold while it is
  std::string check;                         // what a value must be
  std::string rule_in;                       // the variable with the rule, or the list, of a value
  std::string fault_path;  // how result documents name a faulty value; empty for never

  bool has_range = false;  // of the numbers that are taken when settings are applied
  int minimum = 0;
  int maximum = 0;

  bool is_indexed = false;
  int last_index = 0;       // the first is 0
  std::string index_count;  // the variable that says how many there are
};

// All variables, in the order of the sections, and by name within a section.
std::vector<CatalogueEntry> ListVariables();

// The catalogue as a JSON document, and as a page in Markdown.
std::string CatalogueJson(const std::vector<CatalogueEntry>& entries);
std::string CatalogueMarkdown(const std::vector<CatalogueEntry>& entries);

}  // namespace kio::tools

#endif  // TOOLS_CATALOGUE_H
