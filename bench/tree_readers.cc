#include "tree_readers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <vector>

namespace kio::bench {
namespace {

template <std::size_t N>
void CopyText(char (&buffer)[N], const char* text, std::size_t size) {
  const std::size_t count = std::min(size, N - 1);
  std::memcpy(buffer, text, count);
  buffer[count] = '\0';
}

class PugixmlReader {
 public:
  using Node = pugi::xml_node;

  static Node Child(const Node& parent, const char* key) { return parent.child(key); }
  template <std::size_t N>
  void Text(const Node& parent, const char* key, char (&buffer)[N]) {
    const char* const text = parent.child(key).child_value();
    CopyText(buffer, text, std::strlen(text));
  }
  static void Int(const Node& parent, const char* key, int& number) {
    number = static_cast<int>(std::strtol(parent.child(key).child_value(), nullptr, 10));
  }
  static Node FirstRule(const Node& parent) { return parent.child("AcRule"); }
  static Node NextRule(const Node& /*parent*/, const Node& rule) {
    return rule.next_sibling("AcRule");
  }
};

class RapidxmlReader {
 public:
  using Node = rapidxml::xml_node<>*;

  static Node Child(Node parent, const char* key) {
    return parent == nullptr ? nullptr : parent->first_node(key);
  }
  template <std::size_t N>
  void Text(Node parent, const char* key, char (&buffer)[N]) {
    const Node node = Child(parent, key);
    if (node != nullptr) {
      CopyText(buffer, node->value(), node->value_size());
    }
  }
  static void Int(Node parent, const char* key, int& number) {
    const Node node = Child(parent, key);
    if (node != nullptr) {
      number = static_cast<int>(std::strtol(node->value(), nullptr, 10));
    }
  }
  static Node FirstRule(Node parent) { return Child(parent, "AcRule"); }
  static Node NextRule(Node /*parent*/, Node rule) { return rule->next_sibling("AcRule"); }
};

}  // namespace

bool ReadByPugixml(const char* document, std::size_t size, Settings& out) {
  pugi::xml_document tree;
  if (!tree.load_buffer(document, size)) {
    return false;
  }
  PugixmlReader reader;
  ReadSettings(reader, tree.child("root"), out);
  return true;
}

bool ReadByRapidxml(const char* document, std::size_t size, Settings& out) {
  // rapidxml parses in place, so it gets a copy.
  std::vector<char> text(document, document + size);
  text.push_back('\0');
  rapidxml::xml_document<> tree;
  try {
    tree.parse<0>(text.data());
  } catch (const rapidxml::parse_error&) {
    return false;
  }
  RapidxmlReader reader;
  ReadSettings(reader, tree.first_node("root"), out);
  return true;
}

}  // namespace kio::bench
