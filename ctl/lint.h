// All faults of a settings document in one run.
#ifndef CTL_LINT_H
#define CTL_LINT_H

#include <optional>
#include <string>
#include <vector>

#include "document_text.h"
#include "judge.h"

namespace kioctl {

// A fault, or what the device accepts but an author rarely means.
struct Finding {
  bool is_error = true;
  std::string id;  // of the kind: "missing-element", or the name of a quirk
  Span span;       // in the document
  std::string what;
  std::string path;      // of the element in the document
  std::string reported;  // as the router reports it; empty for a warning
  std::string rule;      // what a value must be
  std::string value;     // what stands there
  std::string help;      // what to write instead
  std::optional<Edit> fix;
};

// The faults and warnings, in the order of the text.
std::vector<Finding> Lint(const std::string& document, Judge* judge);

// What lint_warnings.cc adds.
std::vector<Finding> Warnings(const std::string& document, const std::vector<Element>& elements);

// The rows of the version that a document names.
std::vector<Element> ElementsFor(const std::string& document);

// The nearest of some words; empty when none is near.
std::string Nearest(const std::string& word, const std::vector<std::string>& words);

// A value that may be shown: stars for a secret.
std::string Shown(const Element& element, const std::string& value);

}  // namespace kioctl

#endif  // CTL_LINT_H
