// What a device accepts but an author rarely means.
#include <algorithm>
#include <set>
#include <string_view>

#include "lint.h"

namespace kioctl {
namespace {

constexpr size_t kMostRules = 40;
constexpr size_t kLettersOfAChannel = 3;

class Warner {
 public:
  Warner(const std::string& document, const std::vector<Element>& elements)
      : document_(document), elements_(elements), tags_(TagsOf(document)) {}

  std::vector<Finding> Run() {
    WarnOfTags();
    for (const Element& element : elements_) {
      const std::vector<Span> spans = FindAll(document_, element.path);
      for (const Span& span : spans) {
        if (!element.is_block) {
          WarnOfValue(element, span);
        }
      }
      if (element.name == "AcRule" && RuleTags(element.path).size() > kMostRules) {
        Add("rules-beyond-the-fortieth-unread", RuleTags(element.path)[kMostRules],
            "the device reads forty rules: this one and those behind it are ignored", element.path,
            "remove rules until forty are left");
      }
    }
    return std::move(findings_);
  }

 private:
  Finding& Add(const std::string& id, const Span& span, const std::string& what,
               const std::string& path, const std::string& help) {
    Finding finding;
    finding.is_error = false;
    finding.id = id;
    finding.span = span;
    finding.what = what;
    finding.path = path;
    finding.help = help;
    findings_.push_back(finding);
    return findings_.back();
  }

  std::vector<Span> RuleTags(const std::string& path) const {
    std::vector<Span> spans;
    for (const Tag& tag : tags_) {
      if (tag.kind != Tag::Kind::kClose && SameName(tag.path, path)) {
        spans.push_back(tag.span);
      }
    }
    return spans;
  }

  void WarnOfTags();
  void WarnOfUnknown(const Tag& tag, const std::string& parent);
  void WarnOfKnown(const Tag& tag, const Element& element);
  void WarnOfValue(const Element& element, const Span& span);
  void WarnOfCut(const Element& element, const Span& span);
  bool IsRead(const Element& element) const;
  std::optional<Edit> Moved(const Tag& tag) const;

  const std::string& document_;
  const std::vector<Element>& elements_;
  std::vector<Tag> tags_;
  std::vector<Finding> findings_;
  std::set<std::string> seen_;
};

// The lines of an element, or the element alone when it shares its line.
Span WholeLines(const std::string& text, Span element) {
  if (element.begin == 0) {
    return element;
  }
  const size_t before = text.find_last_not_of(" \t", element.begin - 1);
  const size_t end = element.begin + element.length;
  if (before != std::string::npos && text[before] == '\n' && text[end] == '\n') {
    element = {before + 1, end - before};
  }
  return element;
}

// A text behind all that is in a block, on a line of its own where the others have one.
Edit Appended(const std::string& text, const Span& block, const std::string& element) {
  const size_t end = block.begin + block.length;
  const size_t last = text.find_last_not_of(" \t", end - 1);
  const size_t first = text.find_first_not_of(" \t\r\n", block.begin);
  const size_t line = text.rfind('\n', first);
  if (last < block.begin || text[last] != '\n' || line == std::string::npos || line < block.begin) {
    return {{end, 0}, element};
  }
  return {{last + 1, 0}, text.substr(line + 1, first - line - 1) + element + "\n"};
}

// The change that puts an element where it belongs: into the only block that lacks it.
std::optional<Edit> Warner::Moved(const Tag& tag) const {
  const std::string close = "</" + tag.name + ">";
  const size_t content = tag.span.begin + tag.span.length;
  const size_t end = document_.find('<', content);
  if (!tag.is_plain || tag.kind != Tag::Kind::kOpen || end == std::string::npos ||
      document_.compare(end, close.size(), close) != 0) {
    return std::nullopt;
  }
  std::vector<Span> blocks;
  std::string path;
  for (const Element& element : elements_) {
    if (!SameName(element.name, tag.name) || !FindAll(document_, element.path).empty()) {
      continue;
    }
    for (const Span& block : FindAll(document_, element.parent)) {
      blocks.push_back(block);
      path = element.path;
    }
  }
  if (blocks.size() != 1 || blocks[0].length == 0) {
    return std::nullopt;
  }
  const Span element = {tag.span.begin, end + close.size() - tag.span.begin};
  const Span taken = WholeLines(document_, element);
  const Edit put = Appended(document_, blocks[0], document_.substr(element.begin, element.length));
  const size_t behind = taken.begin + taken.length;
  const Edit edit =
      put.span.begin <= taken.begin
          ? Edit{{put.span.begin, behind - put.span.begin},
                 put.text + document_.substr(put.span.begin, taken.begin - put.span.begin)}
          : Edit{{taken.begin, put.span.begin - taken.begin},
                 document_.substr(behind, put.span.begin - behind) + put.text};
  // Among broken tags it would be as misplaced as before.
  const std::vector<Tag> tags = TagsOf(Apply(document_, edit));
  const bool is_right = std::any_of(
      tags.begin(), tags.end(), [&path](const Tag& other) { return SameName(other.path, path); });
  return is_right ? std::optional(edit) : std::nullopt;
}

void Warner::WarnOfUnknown(const Tag& tag, const std::string& parent) {
  std::vector<std::string> siblings;
  std::string place;
  for (const Element& element : elements_) {
    if (SameName(element.parent, parent)) {
      siblings.push_back(element.name);
    }
    if (SameName(element.name, tag.name) && place.empty()) {
      place = element.parent.empty() ? "root" : element.parent;
    }
  }
  if (!place.empty()) {
    Add("misplaced-element", tag.span, tag.name + " has no meaning here", tag.path,
        "it belongs into " + place)
        .fix = Moved(tag);
    return;
  }
  const std::string near = Nearest(tag.name, siblings);
  Finding& finding =
      Add("unknown-element", tag.span, "the device does not know " + tag.name + " here", tag.path,
          near.empty() ? "remove it" : "did you mean <" + near + ">?");
  // A tag that stands beside the right one is no misspelling of it.
  const std::string right = (parent.empty() ? "" : parent + "/") + near;
  if (!near.empty() && FindAll(document_, right).empty()) {
    finding.fix = Renamed(document_, tag, near);
  }
}

void Warner::WarnOfKnown(const Tag& tag, const Element& element) {
  if (!tag.is_plain) {
    Add("plain-tags-only", tag.span, "a tag with attributes or blanks is not found", tag.path,
        "write <" + element.name + ">")
        .fix = Renamed(document_, tag, element.name);
    return;
  }
  const std::string close = "</" + tag.name + ">";
  const bool is_empty =
      tag.kind == Tag::Kind::kEmpty ||
      document_.compare(tag.span.begin + tag.span.length, close.size(), close) == 0;
  if (element.is_block && is_empty) {
    Add("empty-block-reaches-on", tag.span,
        "the device looks for what is in an empty block in the rest of the document", tag.path,
        "fill it, or put a blank between its tags");
  }
  if (element.name != "AcRule" && element.parent.find("AcRule") == std::string::npos &&
      !seen_.insert(LowerCase(element.path)).second) {
    Add("nesting-unseen", tag.span, "only the first " + element.name + " of its block is read",
        tag.path, "remove this one");
  }
}

void Warner::WarnOfTags() {
  std::string unknown;
  for (const Tag& tag : tags_) {
    if (tag.kind == Tag::Kind::kClose || SameName(tag.name, "root")) {
      continue;
    }
    if (!unknown.empty() && tag.path.starts_with(unknown + "/")) {
      continue;
    }
    if (const Element* const element = FindElement(elements_, tag.path)) {
      WarnOfKnown(tag, *element);
      continue;
    }
    const size_t slash = tag.path.rfind('/');
    WarnOfUnknown(tag, slash == std::string::npos ? "" : tag.path.substr(0, slash));
    unknown = tag.path;
  }
}

bool Warner::IsRead(const Element& element) const {
  const std::string governor = element.Governor();
  const std::vector<Span> spans =
      governor.empty() ? std::vector<Span>() : FindAll(document_, governor);
  if (spans.empty()) {
    return true;
  }
  const std::string value = document_.substr(spans[0].begin, spans[0].length);
  const std::vector<std::string> wanted = element.GovernedBy();
  return std::any_of(wanted.begin(), wanted.end(),
                     [&value](const std::string& word) { return SameName(word, value); });
}

void Warner::WarnOfCut(const Element& element, const Span& span) {
  const std::string value = document_.substr(span.begin, span.length);
  const size_t entity = value.rfind('&', element.limit - 1);
  const size_t end = entity == std::string::npos ? entity : value.find(';', entity);
  const Span cut = {span.begin + element.limit, span.length - element.limit};
  const std::string limit = std::to_string(element.limit);
  if (end != std::string::npos && end >= element.limit &&
      end - entity < std::string_view("&#x10FFFF;").size()) {
    Add("entity-cut-stays-raw", {span.begin + entity, end + 1 - entity},
        "the limit of " + limit + " characters cuts this entity, and a piece of it stays",
        element.path, "shorten the value");
    return;
  }
  std::string id = "value-is-cut";
  if (element.name == "EncryptionKey" && element.parent.find("Wireless") != std::string::npos) {
    id = "radio-key-of-31";
  } else if (element.parent.ends_with("ExtenderSite")) {
    id = "site-texts-of-17";
  }
  Add(id, cut, element.name + " is cut to " + limit + " characters", element.path,
      "shorten the value");
}

void Warner::WarnOfValue(const Element& element, const Span& span) {
  const std::string value = document_.substr(span.begin, span.length);
  if (!IsRead(element)) {
    std::string when = element.when;
    std::erase(when, '`');
    Add("not-read", span, element.name + " is ignored: it is read when " + when, element.path,
        "remove it");
    return;
  }
  if (element.name == "Channel" && value.size() > kLettersOfAChannel) {
    Add("channel-of-three-characters", span,
        "only the first three characters of a channel are checked", element.path,
        "write a channel of the device's list");
  }
  if (element.limit > 0 && value.size() > element.limit) {
    WarnOfCut(element, span);
  }
  if (element.name == "Configurable" && value == "0") {
    Add("configurable-zero-leaves-out", span, "Configurable 0 leaves its block out of the exchange",
        element.path, "remove it when the block is to be applied");
  }
  if (element.name == "DNS" && value.empty()) {
    Add("default-name-server", {span.begin, 1}, "an empty DNS becomes 8.8.8.8", element.path,
        "name a server");
  }
}

}  // namespace

std::vector<Finding> Warnings(const std::string& document, const std::vector<Element>& elements) {
  return Warner(document, elements).Run();
}

}  // namespace kioctl
