// Settings documents for the tests, built element by element.
#ifndef KIO_TESTS_SUPPORT_SAMPLE_DOCUMENT_H
#define KIO_TESTS_SUPPORT_SAMPLE_DOCUMENT_H

#include <string>
#include <vector>

namespace kio::test {

// A document under construction. Elements are named by their path below the document element, such
// as "Device/UpLinkConnection/ConnType"; of several elements of one name the first is meant.
class Document {
 public:
  // Gives the element a value, adding it (and what encloses it) at the end when there is none.
  Document& Set(const std::string& path, const std::string& value);
  // Replaces the whole element by `markup`, tags included.
  Document& SetMarkup(const std::string& path, const std::string& markup);
  // Removes the element with everything inside it. A parent that has no other element keeps a
  // blank: without one it would be an empty element, in which a search reaches to the document's
  // end.
  Document& Remove(const std::string& path);
  // Puts the element before everything else in its parent.
  Document& SetFirst(const std::string& path, const std::string& value);
  // Adds one access-control rule to a radio ("Wireless2.4" or "Wireless5").
  Document& AddRule(const std::string& radio, const std::string& active, const std::string& mac);

  // The paths of all elements, each once, a block before what is in it.
  [[nodiscard]] std::vector<std::string> Paths() const;
  // The elements without the document element around them.
  [[nodiscard]] std::string Body() const;
  // The whole document.
  [[nodiscard]] std::string Text() const;

 private:
  struct Element {
    std::string name;
    std::string value;
    std::string markup;  // when not empty, written instead of the element
    std::vector<Element> children;
  };

  Element& Find(const std::string& path);
  static void Append(const Element& element, std::string& text);
  static void AddPaths(const Element& element, const std::string& prefix,
                       std::vector<std::string>& paths);

  Element root_{"root", "", "", {}};
};

// The document that asks a device of StoreSampleDevice for exactly what it already has.
Document SampleDocument();

// The same for a device of StoreVersion10Device.
Document Version10Document();

// Puts an uplink of another hardware or connection type into a document of either version, with all
// the elements that it needs. `hardware` is a word of HardwareTypeArray.
void UseHardware(Document& document, const std::string& hardware);
void UseStatic(Document& document);
void UsePppoe(Document& document);

}  // namespace kio::test

#endif
