// Settings documents of the scenarios.
#ifndef KIO_DIFFERENTIAL_DOCUMENT_H
#define KIO_DIFFERENTIAL_DOCUMENT_H

#include <string>
#include <vector>

#include "random.h"

namespace kio::differential {

struct Element {
  std::string name;
  std::string value;
  std::vector<Element> children;
  std::string markup;  // when not empty, written instead of the element
};

// A document for the device in the store, mostly of the device's version. Many values are those of
// the device. Then it is spoilt `faults` times.
Element MakeDocument(Random& random, int faults);

// Spoils the document once: an element becomes missing, double, empty, unclosed, of a bad value,
// and so on.
void Spoil(Random& random, Element& root);

// The text, with blanks between the elements or without.
std::string TextOf(Random& random, const Element& root);

// A text that is mostly a document, changed byte by byte.
std::string MutatedDocument(Random& random);

}  // namespace kio::differential

#endif
