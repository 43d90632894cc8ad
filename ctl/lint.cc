#include "lint.h"

#include <algorithm>
#include <numeric>

#include "linter.h"

namespace kioctl {
namespace {

// The letters that must be changed to make one word of another.
size_t Distance(const std::string& one, const std::string& other) {
  std::vector<size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (size_t i = 0; i < one.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t j = 0; j < other.size(); ++j) {
      const bool same = SameName(one.substr(i, 1), other.substr(j, 1));
      const size_t cost = std::min({diagonal + (same ? 0 : 1), row[j] + 1, row[j + 1] + 1});
      diagonal = row[j + 1];
      row[j + 1] = cost;
    }
  }
  return row.back();
}

}  // namespace

std::string Nearest(const std::string& word, const std::vector<std::string>& words) {
  constexpr size_t kLettersForEach = 3;
  std::string nearest;
  size_t best = word.size() / kLettersForEach + 1;
  for (const std::string& other : words) {
    const size_t distance = Distance(word, other);
    if (!other.empty() && distance < best && distance < other.size()) {
      best = distance;
      nearest = other;
    }
  }
  return nearest;
}

std::string Shown(const Element& element, const std::string& value) {
  return element.IsSecret() && !value.empty() ? "********" : value;
}

std::vector<Element> ElementsFor(const std::string& document) {
  const std::vector<Span> minor = FindAll(document, "specVersion/minor");
  const bool is_old = !minor.empty() && document.substr(minor[0].begin, minor[0].length) == "0";
  return ElementsOf(is_old ? "settings 1.0" : "settings 1.1");
}

std::vector<Finding> Lint(const std::string& document, Judge* judge) {
  std::vector<Finding> findings = Linter(document, judge).Run();
  const auto is_told = [&findings](const Finding& warning) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
      return finding.is_error && finding.fix && finding.span.begin >= warning.span.begin &&
             finding.span.begin < warning.span.begin + warning.span.length;
    });
  };
  const std::vector<Element> elements = ElementsFor(document);
  // What a wrong value would have read is no fault of its own.
  const auto is_governed = [&](const Finding& warning) {
    const Element* const element = FindElement(elements, warning.path);
    return warning.id == "not-read" && element != nullptr &&
           std::any_of(findings.begin(), findings.end(), [element](const Finding& finding) {
             return finding.is_error && SameName(finding.path, element->Governor());
           });
  };
  for (const Finding& warning : Warnings(document, elements)) {
    if (!is_told(warning) && !is_governed(warning)) {
      findings.push_back(warning);
    }
  }
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& one, const Finding& other) {
    return one.span.begin < other.span.begin;
  });
  return findings;
}

}  // namespace kioctl
