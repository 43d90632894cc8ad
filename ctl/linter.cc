#include "linter.h"

#include <algorithm>

namespace kioctl {
namespace {

constexpr int kMostFaults = 200;

}  // namespace

std::string IdOf(int code) {
  switch (code) {
    case kWrongVersion:
      return "version";
    case kMissing:
      return "missing-element";
    case 10:
      return "length";
    case 11:
      return "character";
    case 20:
      return "too-large";
    case 21:
      return "too-small";
    default:
      return "invalid-value";
  }
}

// From the last to the first, so that none moves another.
std::string ApplyAll(std::string text, const std::vector<Edit>& edits) {
  for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
    text = Apply(text, *edit);
  }
  return text;
}

void Linter::Change(std::vector<Edit> edits) {
  for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
    text_ = Apply(text_, *edit);
    done_.push_back(*edit);
  }
}

size_t Linter::Original(size_t offset) const {
  for (auto edit = done_.rbegin(); edit != done_.rend(); ++edit) {
    const size_t begin = edit->span.begin;
    if (offset >= begin + edit->text.size() && !(edit->text.empty() && offset == begin)) {
      offset = offset - edit->text.size() + edit->span.length;
    } else if (offset > begin) {
      offset = begin;
    }
  }
  return std::min(offset, original_.size());
}

bool Linter::IsInserted(const std::string& path) const {
  return std::any_of(inserted_.begin(), inserted_.end(),
                     [&path](const std::string& block) { return path.starts_with(block + "/"); });
}

std::string Linter::WithValues(const std::vector<Span>& spans, const std::string& value,
                               size_t but) const {
  std::vector<Edit> edits;
  for (size_t i = 0; i < spans.size(); ++i) {
    if (i != but) {
      edits.push_back({spans[i], value});
    }
  }
  return ApplyAll(text_, edits);
}

std::vector<std::string> Linter::Candidates(const Element& element,
                                            const std::string& value) const {
  std::vector<std::string> texts;
  const auto add = [&texts](const std::string& text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) {
      texts.push_back(text);
    }
  };
  if (const std::string near = Nearest(value, element.words); !near.empty()) {
    add(near);
  }
  // With some values the device reads elements that stand in the document.
  for (const Element& other : elements_) {
    if (SameName(other.Governor(), element.path) && !FindAll(text_, other.path).empty()) {
      add(other.GovernedBy().front());
    }
  }
  if (!element.node.empty()) {
    if (const auto text = judge_->Node(element.node)) {
      add(EncodeEntities(*text));
    }
  }
  for (const std::string& word : element.words) {
    add(word);
  }
  if (element.minimum) {
    add(std::to_string(*element.minimum));
    add(std::to_string(*element.maximum));
  }
  for (const char* const text :
       {"0", "1", "2", "3", "x", "abcde", "abcdefgh", "192.0.2.1", "255.255.255.0",
        "02:00:00:00:00:01", "", "36", "1234567890123", "1492"}) {
    add(text);
  }
  return texts;
}

void Linter::Record(const Element& element, const Span& span, const Verdict& verdict) {
  const std::string value = text_.substr(span.begin, span.length);
  Finding finding;
  finding.id = IdOf(verdict.code);
  finding.span = {Original(span.begin), value.size()};
  finding.path = element.path;
  finding.reported = verdict.message;
  finding.value = Shown(element, value);
  finding.rule = judge_->RuleOf(element);
  finding.what =
      element.name + " cannot be " + (value.empty() ? "empty" : "\"" + finding.value + "\"");
  if (const std::string near = Nearest(value, element.words); !near.empty()) {
    finding.help = "did you mean " + near + "?";
    finding.fix = Edit{finding.span, near};
  }
  findings_.push_back(finding);
}

bool Linter::Repair(const Element& element, const Verdict& verdict) {
  const std::vector<Span> spans = FindAll(text_, element.path);
  if (spans.empty()) {
    return false;
  }
  const std::string value = text_.substr(spans[0].begin, spans[0].length);
  std::optional<std::string> good;
  for (const std::string& candidate : Candidates(element, value)) {
    const Verdict next = judge_->Try(WithValues(spans, candidate));
    if (next == verdict) {
      continue;
    }
    good = candidate;
    // One that asks for more elements would only make new faults.
    if (next.code != kMissing) {
      break;
    }
  }
  if (!good) {
    return false;
  }
  std::vector<Edit> edits;
  for (size_t i = 0; i < spans.size(); ++i) {
    // One of several is at fault when it alone keeps the verdict.
    if (spans.size() == 1 || judge_->Try(WithValues(spans, *good, i)) == verdict) {
      // What lint has put there is no fault of the author's.
      if (!IsInserted(element.path)) {
        Record(element, spans[i], verdict);
      }
      edits.push_back({spans[i], *good});
    }
  }
  Change(edits);
  return !edits.empty();
}

bool Linter::HandleValue(const Verdict& verdict) {
  // The name of a fault may be that of another element.
  for (const Element& element : elements_) {
    const bool may_be =
        SameName(element.fault, verdict.message) || SameName(element.path, verdict.message);
    if (!element.is_block && may_be && Repair(element, verdict)) {
      return true;
    }
  }
  return false;
}

bool Linter::HandleVersion() {
  bool is_better = false;
  for (const char* const name : {"major", "minor"}) {
    const Element* const element = FindElement(elements_, std::string("specVersion/") + name);
    const std::vector<Span> spans = FindAll(text_, element->path);
    const std::string wanted = judge_->Node(element->node).value_or("1");
    if (spans.empty() || text_.substr(spans[0].begin, spans[0].length) == wanted) {
      continue;
    }
    Record(*element, spans[0], {kWrongVersion, "specVersion"});
    findings_.back().rule = "the device's version: " + wanted;
    findings_.back().help = "write " + wanted;
    Change({{spans[0], wanted}});
    is_better = true;
  }
  return is_better;
}

bool Linter::Handle(const Verdict& verdict) {
  switch (verdict.code) {
    case kWrongVersion:
      return HandleVersion();
    case kMissing:
      return HandleMissing(verdict);
    default:
      return HandleValue(verdict);
  }
}

std::vector<Finding> Linter::Run() {
  if (!FindContent(text_, std::nullopt, "root")) {
    Finding finding;
    finding.id = "no-root";
    finding.span = {0, 1};
    finding.what = "the document has no root element, and the device does not answer it";
    finding.help = "put everything between <root> and </root>";
    return {finding};
  }
  for (int i = 0; i < kMostFaults; ++i) {
    const Verdict verdict = judge_->Try(text_);
    if (verdict.code == 0) {
      break;
    }
    if (!Handle(verdict)) {
      Finding finding;
      finding.id = IdOf(verdict.code);
      finding.reported = verdict.message;
      finding.path = verdict.message;
      const std::vector<Span> spans = FindAll(text_, verdict.message);
      finding.span = spans.empty() ? Span{0, 1} : Span{Original(spans[0].begin), spans[0].length};
      finding.what = MeaningOf(verdict.code) + ": " + verdict.message;
      finding.help = "mend this first: what stands behind it was not looked at";
      findings_.push_back(finding);
      break;
    }
  }
  return findings_;
}

}  // namespace kioctl
