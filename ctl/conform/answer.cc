#include "conform/answer.h"

#include <pugixml.hpp>

namespace kioctl::conform {
namespace {

// The child of `root` that a document must have.
pugi::xml_node ChildOf(const Answer& answer, const char* name, pugi::xml_document* document) {
  const auto parsed =
      document->load_buffer(answer.body.data(), answer.body.size(), pugi::parse_default);
  const pugi::xml_node child = document->child("root").child(name);
  Expect(parsed && child, answer.call + ": a document with " + name +
                              " was expected, and the answer is " + Shown(answer.body));
  return child;
}

}  // namespace

void Break(const std::string& what) { throw Broken{what}; }

void Skip(const std::string& why) { throw Unfit{why}; }

void Expect(bool holds, const std::string& what) {
  if (!holds) {
    Break(what);
  }
}

void SkipUnless(bool holds, const std::string& why) {
  if (!holds) {
    Skip(why);
  }
}

std::string Shown(const std::string& text) {
  constexpr size_t kMost = 200;
  constexpr unsigned char kFirstPlain = 0x20;
  std::string shown;
  for (const char c : text.substr(0, kMost)) {
    if (c == '\n') {
      shown += "\\n";
    } else {
      shown += static_cast<unsigned char>(c) < kFirstPlain ? '?' : c;
    }
  }
  return "\"" + shown + (text.size() > kMost ? "…" : "") + "\"";
}

std::string Answer::Header(const std::string& name) const {
  const auto header = headers.find(name);
  return header == headers.end() ? "" : header->second;
}

const Answer& Answer::Is(int expected) const {
  Expect(status == expected, call + ": status " + std::to_string(expected) +
                                 " was expected, and the answer is " + std::to_string(status) +
                                 " with " + Shown(body));
  return *this;
}

const Answer& Answer::HasType(const std::string& type) const {
  const std::string has = Header("content-type");
  Expect(has.substr(0, has.find(';')) == type,
         call + ": the type " + type + " was expected, and the answer has " + Shown(has));
  return *this;
}

const Answer& Answer::Has(const std::string& header) const {
  Expect(!Header(header).empty(), call + ": the answer lacks the header " + header);
  return *this;
}

const Answer& Answer::IsOneLine() const {
  const size_t end = body.find('\n');
  Expect(body.size() > 1 && (end == std::string::npos || end + 1 == body.size()),
         call + ": a line of text was expected, and the answer is " + Shown(body));
  return HasType("text/plain");
}

const Answer& Answer::HasCode(int code) const {
  IsOneLine();
  const std::string begin = std::to_string(code) + " ";
  Expect(body.starts_with(begin) && body.size() > begin.size() + 1,
         call + ": code " + std::to_string(code) +
             " with a reason was expected, and the answer is " + Shown(body));
  return *this;
}

Value Answer::Json() const {
  HasType("application/json");
  Value value = Value::Parse(body);
  Expect(!value.IsAbsent(), call + ": the answer is not JSON: " + Shown(body));
  return value;
}

ResultText Answer::Result() const {
  Is(200);
  HasType("application/xml");
  pugi::xml_document document;
  for (const char* const name : {"RssSetResult", "RssSetMsg", "RssGetWaitSec"}) {
    ChildOf(*this, name, &document);
  }
  const pugi::xml_node root = document.child("root");
  return {root.child("RssSetResult").text().as_int(-1), root.child_value("RssSetMsg"),
          root.child("RssGetWaitSec").text().as_int(-1)};
}

ResultText Answer::Result(int code) const {
  ResultText result = Result();
  Expect(result.code == code, call + ": result " + std::to_string(code) +
                                  " was expected, and it is " + std::to_string(result.code) + " " +
                                  Shown(result.message));
  return result;
}

StepText Answer::Step() const {
  constexpr int kNone = -99;
  Is(200);
  HasType("application/xml");
  pugi::xml_document document;
  const pugi::xml_node result = ChildOf(*this, "result", &document);
  return {result.text().as_int(kNone), document.child("root").child_value("fwver")};
}

}  // namespace kioctl::conform
