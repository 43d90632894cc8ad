// Settings documents, made of what the router has. A case changes what it is about.
#ifndef CTL_CONFORM_DOCUMENT_H
#define CTL_CONFORM_DOCUMENT_H

#include <string>
#include <vector>

#include "conform/facts.h"

namespace kioctl::conform {

class Document {
 public:
  // A document that leaves all as it is. The uplink is left out of it: a mistake there would cut
  // off more than the tester. So are radios that no document brings back.
  explicit Document(const Facts& facts);

  // Puts a text at a path such as "Device/DeviceName", or takes the element away.
  Document& Set(const std::string& path, const std::string& text);
  Document& Remove(const std::string& path);
  // The whole uplink, as the archive has it. It is for documents that are refused, and for dry
  // runs.
  Document& AddUplink(const Facts& facts);

  bool Has(const std::string& path) const { return Find(path) != nullptr; }
  std::string Text(const std::string& path) const;

  // The elements of each block the other way round, the switches of sections first.
  Document& Reverse();
  Document& LowerNames();

  std::string Xml() const;

 private:
  struct Element {
    std::string name;
    std::string text;
    std::vector<Element> children;
  };

  static void Fill(const Value& value, Element* element);
  static void ReverseBelow(Element* element);
  static void LowerBelow(Element* element);
  static void Append(const Element& element, std::string* xml);
  static Element* ChildOf(Element* element, const std::string& name);
  const Element* Find(const std::string& path) const;
  Element* Make(const std::string& path);

  Element root_;
};

// A text as the content of an element.
std::string XmlText(const std::string& text);

// The radios that a document for this router has, such as "Wireless2.4".
std::vector<std::string> RadiosOf(const Facts& facts);

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_DOCUMENT_H
