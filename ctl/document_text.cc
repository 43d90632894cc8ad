#include "document_text.h"

#define KIOAPP_NO_SHORT_NAMES
#include <kioapp/xml.h>

#include <algorithm>

#include "elements.h"

namespace kioctl {
namespace {

constexpr char kRule[] = "AcRule";

std::vector<std::string> PartsOf(const std::string& path) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin <= path.size();) {
    const size_t end = std::min(path.find('/', begin), path.size());
    parts.push_back(path.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

// All rules of a block, one behind the other.
std::vector<Span> RulesIn(const std::string& text, const Span& block) {
  std::vector<Span> rules;
  Span rest = block;
  while (rest.length > 0) {
    const std::optional<Span> rule = FindContent(text, rest, kRule);
    if (!rule || rule->begin < rest.begin) {
      break;
    }
    rules.push_back(*rule);
    const size_t end = rest.begin + rest.length;
    const size_t next = rule->begin + std::max<size_t>(rule->length, 1);
    rest = {next, next < end ? end - next : 0};
  }
  return rules;
}

// Reads one tag at `at`; nothing when what stands there is none.
std::optional<Tag> TagAt(const std::string& text, size_t at) {
  const size_t end = text.find_first_of("<>", at + 1);
  if (end == std::string::npos || text[end] != '>') {
    return std::nullopt;
  }
  std::string inside = text.substr(at + 1, end - at - 1);
  Tag tag;
  tag.span = {at, end + 1 - at};
  if (inside.starts_with('/')) {
    tag.kind = Tag::Kind::kClose;
    inside.erase(0, 1);
  } else if (inside.ends_with('/')) {
    tag.kind = Tag::Kind::kEmpty;
    inside.pop_back();
    if (inside.ends_with(' ')) {
      inside.pop_back();
    }
  }
  tag.name = inside.substr(0, inside.find_first_of(" \t\r\n"));
  tag.is_plain = tag.name == inside;
  if (tag.name.empty()) {
    return std::nullopt;
  }
  return tag;
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string path;
  for (const std::string& part : parts) {
    path += (path.empty() ? "" : "/") + part;
  }
  return path;
}

}  // namespace

Place PlaceOf(const std::string& text, size_t offset) {
  Place place;
  for (size_t i = 0; i < std::min(offset, text.size()); ++i) {
    if (text[i] == '\n') {
      ++place.line;
      place.column = 1;
    } else {
      ++place.column;
    }
  }
  return place;
}

std::optional<Span> FindContent(const std::string& text, const std::optional<Span>& block,
                                const std::string& name) {
  const Span where = block.value_or(Span{});
  int length = 0;
  // The library only reads here; its interface is older than "const".
  char* const begin = const_cast<char*>(text.data()) + where.begin;
  const char* const content =
      FindXmlKeyContain(begin, static_cast<int>(where.length), name.c_str(), &length);
  if (content == nullptr) {
    return std::nullopt;
  }
  return Span{static_cast<size_t>(content - text.data()), static_cast<size_t>(std::max(length, 0))};
}

std::vector<Span> FindAll(const std::string& text, const std::string& path) {
  const std::optional<Span> root = FindContent(text, std::nullopt, "root");
  if (!root) {
    return {};
  }
  std::vector<Span> blocks = {*root};
  for (const std::string& name : PartsOf(path)) {
    std::vector<Span> found;
    for (const Span& block : blocks) {
      if (name == kRule) {
        found = RulesIn(text, block);
      } else if (const auto content = FindContent(text, block, name)) {
        found.push_back(*content);
      }
    }
    blocks = found;
  }
  return blocks;
}

std::vector<Tag> TagsOf(const std::string& text) {
  std::vector<Tag> tags;
  std::vector<std::string> open;
  for (size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
    if (text.compare(at, 4, "<!--") == 0) {
      at = text.find("-->", at);
      if (at == std::string::npos) {
        break;
      }
      continue;
    }
    std::optional<Tag> tag = TagAt(text, at);
    if (!tag || text[at + 1] == '?' || text[at + 1] == '!') {
      continue;
    }
    if (tag->kind == Tag::Kind::kClose) {
      // Back to the tag that it closes, when that is open.
      const auto same = std::find_if(open.rbegin(), open.rend(), [&](const std::string& name) {
        return SameName(name, tag->name);
      });
      if (same != open.rend()) {
        open.erase(same.base() - 1, open.end());
      }
    }
    std::vector<std::string> parts = open;
    parts.push_back(tag->name);
    if (SameName(parts.front(), "root")) {
      parts.erase(parts.begin());
    }
    tag->path = Joined(parts);
    if (tag->kind == Tag::Kind::kOpen) {
      open.push_back(tag->name);
    }
    tags.push_back(std::move(*tag));
  }
  return tags;
}

std::string EncodeEntities(const std::string& text) {
  std::string encoded;
  for (const char c : text) {
    switch (c) {
      case '&':
        encoded += "&amp;";
        break;
      case '<':
        encoded += "&lt;";
        break;
      case '>':
        encoded += "&gt;";
        break;
      default:
        encoded += c;
    }
  }
  return encoded;
}

std::vector<Edit> TagEdits(const std::string& text, const Tag& tag, const std::string& name) {
  const std::string end = tag.kind == Tag::Kind::kEmpty ? "/>" : ">";
  std::vector<Edit> edits = {{tag.span, "<" + name + end}};
  const std::string close = "</" + tag.name + ">";
  const size_t at = text.find(close, tag.span.begin + tag.span.length);
  if (tag.kind == Tag::Kind::kOpen && at != std::string::npos) {
    edits.push_back({{at, close.size()}, "</" + name + ">"});
  }
  return edits;
}

Edit Renamed(const std::string& text, const Tag& tag, const std::string& name) {
  const std::vector<Edit> edits = TagEdits(text, tag, name);
  const Span& last = edits.back().span;
  const size_t length = last.begin + last.length - tag.span.begin;
  std::string whole = text.substr(tag.span.begin, length);
  for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
    whole.replace(edit->span.begin - tag.span.begin, edit->span.length, edit->text);
  }
  return {{tag.span.begin, length}, whole};
}

std::string Apply(const std::string& text, const Edit& edit) {
  std::string changed = text;
  return changed.replace(edit.span.begin, edit.span.length, edit.text);
}

}  // namespace kioctl
