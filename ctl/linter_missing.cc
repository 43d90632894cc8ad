// Elements that are missing, or were meant and are not found.
#include "linter.h"

namespace kioctl {

std::optional<Tag> Linter::MeantFor(const Element& element) const {
  for (const Tag& tag : TagsOf(text_)) {
    const size_t slash = tag.path.rfind('/');
    const std::string parent = slash == std::string::npos ? "" : tag.path.substr(0, slash);
    if (tag.kind == Tag::Kind::kClose || !SameName(parent, element.parent)) {
      continue;
    }
    const bool is_same = SameName(tag.name, element.name);
    const bool is_near =
        FindElement(elements_, tag.path) == nullptr && !Nearest(tag.name, {element.name}).empty();
    if (is_near || (is_same && !tag.is_plain)) {
      return tag;
    }
  }
  return std::nullopt;
}

Finding Linter::MissingOf(const Element& element, const Verdict& verdict) const {
  Finding finding;
  finding.id = IdOf(kMissing);
  finding.path = element.path;
  finding.reported = verdict.message;
  finding.rule = judge_->RuleOf(element);
  finding.what = "the element " + element.name + " is missing";
  return finding;
}

// A tag that was meant for the element gets its name, and its value is judged then.
bool Linter::Rename(const Element& element, const Verdict& verdict) {
  const std::optional<Tag> meant = MeantFor(element);
  if (!meant) {
    return false;
  }
  const Edit edit = Renamed(text_, *meant, element.name);
  const size_t before = FindAll(text_, element.path).size();
  if (FindAll(Apply(text_, edit), element.path).size() <= before) {
    return false;
  }
  const size_t begin = Original(meant->span.begin);
  Finding finding = MissingOf(element, verdict);
  const bool is_same = SameName(meant->name, element.name);
  finding.span = is_same ? Span{begin, meant->span.length} : Span{begin + 1, meant->name.size()};
  finding.value = meant->name;
  finding.help = is_same
                     ? "a tag with attributes or blanks is not found: write <" + element.name + ">"
                     : "did you mean <" + element.name + ">?";
  // What was put into the element already is none of the author's.
  for (const Tag& tag : TagsOf(original_)) {
    if (tag.span.begin == begin) {
      finding.fix = Renamed(original_, tag, element.name);
    }
  }
  findings_.push_back(finding);
  // The tags alone, so that the places of what is between them stay known.
  Change(TagEdits(text_, *meant, element.name));
  return true;
}

void Linter::RecordMissing(const Element& element, const Span& block, const Verdict& verdict) {
  Finding finding = MissingOf(element, verdict);
  if (!element.when.empty() && element.when != "always") {
    std::string when = element.when;
    std::erase(when, '`');
    finding.what += " (needed when " + when + ")";
  }
  // The opening tag of the block that lacks it.
  const size_t content = Original(block.begin);
  const size_t tag = content == 0 ? 0 : original_.rfind('<', content - 1);
  finding.span = {tag == std::string::npos ? 0 : tag, content > tag ? content - tag : 1};
  finding.help = "add <" + element.name + "> to it";
  const std::string open = "<" + element.name + ">";
  const size_t at = original_.find(open, content);
  if (at != std::string::npos &&
      original_.find("</" + element.name + ">", at) == std::string::npos) {
    finding.span = {at, open.size()};
    finding.help = "it has no closing tag: add </" + element.name + ">";
  }
  findings_.push_back(finding);
}

bool Linter::Insert(const Element& element, const std::vector<Span>& blocks,
                    const Verdict& verdict) {
  std::vector<Span> lacking;
  for (const Span& block : blocks) {
    if (!FindContent(text_, block, element.name)) {
      lacking.push_back({block.begin, 0});
    }
  }
  std::vector<std::string> contents = {" "};
  if (!element.is_block) {
    contents = Candidates(element, "");
  }
  for (const std::string& content : contents) {
    const std::string whole = "<" + element.name + ">" + content + "</" + element.name + ">";
    std::vector<Edit> edits;
    edits.reserve(lacking.size());
    for (const Span& place : lacking) {
      edits.push_back({place, whole});
    }
    const Verdict next = judge_->Try(ApplyAll(text_, edits));
    // A value that is not good makes a fault of its own, of the same element.
    if (lacking.empty() || next == verdict ||
        (next.code != 0 && SameName(next.message, element.fault))) {
      continue;
    }
    if (!IsInserted(element.path)) {
      for (const Span& place : lacking) {
        RecordMissing(element, place, verdict);
      }
    }
    if (element.is_block) {
      inserted_.push_back(element.path);
    }
    Change(edits);
    return true;
  }
  return false;
}

bool Linter::HandleMissing(const Verdict& verdict) {
  for (const Element& element : elements_) {
    const bool is_named = SameName(element.path, verdict.message) ||
                          SameName(element.fault, verdict.message) ||
                          (element.is_block && SameName(element.name, verdict.message));
    if (!is_named) {
      continue;
    }
    std::vector<Span> blocks;
    if (element.parent.empty()) {
      if (const auto root = FindContent(text_, std::nullopt, "root")) {
        blocks.push_back(*root);
      }
    } else {
      blocks = FindAll(text_, element.parent);
    }
    if (Rename(element, verdict) || Insert(element, blocks, verdict)) {
      return true;
    }
  }
  return false;
}

}  // namespace kioctl
