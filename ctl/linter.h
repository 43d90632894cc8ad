// Finding all errors of a document by a judge that tells one at a time.
#ifndef CTL_LINTER_H
#define CTL_LINTER_H

#include <optional>
#include <string>
#include <vector>

#include "lint.h"

namespace kioctl {

// Codes of result documents.
enum Code { kWrongVersion = 1, kMissing = 2 };

// The kind of a fault with such a code.
std::string IdOf(int code);

// Edits of one text, in its order.
std::string ApplyAll(std::string text, const std::vector<Edit>& edits);

// Has the judge look, records the fault that it tells, puts a good value there, and looks again.
class Linter {
 public:
  Linter(const std::string& document, Judge* judge)
      : original_(document), text_(document), judge_(judge), elements_(ElementsFor(document)) {}

  std::vector<Finding> Run();

 private:
  // Whether the document has become better.
  bool Handle(const Verdict& verdict);
  bool HandleVersion();
  bool HandleMissing(const Verdict& verdict);
  bool HandleValue(const Verdict& verdict);
  bool Repair(const Element& element, const Verdict& verdict);

  // Texts to put in place of a bad value, the likeliest first.
  std::vector<std::string> Candidates(const Element& element, const std::string& value) const;
  std::string WithValues(const std::vector<Span>& spans, const std::string& value,
                         size_t but = std::string::npos) const;
  void Record(const Element& element, const Span& span, const Verdict& verdict);
  // What is the same of all elements that are missing.
  Finding MissingOf(const Element& element, const Verdict& verdict) const;
  void RecordMissing(const Element& element, const Span& block, const Verdict& verdict);
  // A tag in the block of the element that was meant for it.
  std::optional<Tag> MeantFor(const Element& element) const;
  bool Rename(const Element& element, const Verdict& verdict);
  bool Insert(const Element& element, const std::vector<Span>& blocks, const Verdict& verdict);

  // Where a place of the repaired text stands in the document.
  size_t Original(size_t offset) const;
  void Change(std::vector<Edit> edits);
  bool IsInserted(const std::string& path) const;

  std::string original_;
  std::string text_;
  Judge* judge_;
  std::vector<Element> elements_;
  std::vector<Edit> done_;  // in the order in which they were made
  std::vector<std::string> inserted_;
  std::vector<Finding> findings_;
};

}  // namespace kioctl

#endif  // CTL_LINTER_H
