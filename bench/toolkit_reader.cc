#include "toolkit_reader.h"

#include "kioapp/xml.h"

namespace kio::bench {
namespace {

class ToolkitReader {
 public:
  struct Node {
    char* text = nullptr;
    int length = 0;
    char path[128] = "";

    explicit operator bool() const { return text != nullptr; }
  };

  explicit ToolkitReader(const Toolkit& toolkit) : toolkit_(toolkit) {}

  Node Child(const Node& parent, const char* key) {
    Node node;
    node.text =
        toolkit_.find_block(parent.path, parent.text, parent.length, key, node.path, &node.length);
    return node;
  }
  template <int N>
  void Text(const Node& parent, const char* key, char (&buffer)[N]) {
    toolkit_.read_text(parent.text, parent.length, parent.path, key, buffer, N);
  }
  void Int(const Node& parent, const char* key, int& number) {
    toolkit_.read_int(parent.text, parent.length, parent.path, key, &number);
  }
  Node FirstRule(const Node& parent) { return Rule(parent, parent.text); }
  Node NextRule(const Node& parent, const Node& rule) { return Rule(parent, rule.text); }

 private:
  // The next rule from `from` on. A rule's content stands behind its tag, so a search that begins
  // at the content finds the rule after it.
  Node Rule(const Node& parent, char* from) {
    const int left = parent.length - static_cast<int>(from - parent.text);
    Node node;
    if (left > 0) {
      node.text = toolkit_.find(from, left, "AcRule", &node.length);
    }
    return node;
  }

  const Toolkit& toolkit_;
};

}  // namespace

const Toolkit kLibraryToolkit = {
    FindXmlKeyContain, SearchXmlKeyHeader, prepareXmlBlockData,
    GetXmlKeyStrValue, GetXmlKeyIntValue,  strstri,
};

void ReadByToolkit(const Toolkit& toolkit, char* document, Settings& out) {
  ToolkitReader reader(toolkit);
  ToolkitReader::Node root;
  root.text = toolkit.find(document, 0, "root", &root.length);
  if (root) {
    ReadSettings(reader, root, out);
  }
}

}  // namespace kio::bench
