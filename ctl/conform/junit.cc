#include <pugixml.hpp>
#include <sstream>

#include "conform/outcome.h"

namespace kioctl::conform {
namespace {

// XML has no way to write most control characters.
std::string Writable(const std::string& text) {
  std::string writable;
  for (const char c : text) {
    writable += static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t' ? '?' : c;
  }
  return writable;
}

std::string SaidIn(const Outcome& outcome) {
  std::string said = outcome.one->promise;
  said += "\n";
  for (const std::string& line : outcome.transcript) {
    said += "\n" + line;
  }
  return Writable(said);
}

void AddCase(const Outcome& outcome, pugi::xml_node suite) {
  pugi::xml_node one = suite.append_child("testcase");
  const std::string name = outcome.one->name;
  one.append_attribute("classname") = ("conform." + outcome.group()).c_str();
  one.append_attribute("name") = name.substr(name.find('.') + 1).c_str();
  one.append_attribute("time") = outcome.seconds;
  const std::string why = Writable(outcome.why);
  if (outcome.verdict == Verdict::kFailed) {
    pugi::xml_node failure = one.append_child("failure");
    failure.append_attribute("message") = why.c_str();
    failure.text() = SaidIn(outcome).c_str();
  } else if (outcome.verdict != Verdict::kPassed) {
    // A deviation is neither passed nor failed.
    const std::string reason =
        outcome.verdict == Verdict::kDeviates ? "deviation: " + Writable(outcome.agreed) : why;
    one.append_child("skipped").append_attribute("message") = reason.c_str();
  }
}

void Count(pugi::xml_node node, const char* name, unsigned more) {
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) {
    attribute = node.append_attribute(name);
  }
  attribute = attribute.as_uint() + more;
}

}  // namespace

std::string JunitReport(const Run& run) {
  pugi::xml_document document;
  pugi::xml_node all = document.append_child("testsuites");
  all.append_attribute("name") = (run.program + " conform " + run.url).c_str();
  for (const Outcome& outcome : run.outcomes) {
    const std::string group = outcome.group();
    pugi::xml_node suite = all.find_child_by_attribute("name", group.c_str());
    if (!suite) {
      suite = all.append_child("testsuite");
      suite.append_attribute("name") = group.c_str();
    }
    Count(suite, "tests", 1);
    Count(suite, "failures", outcome.verdict == Verdict::kFailed ? 1 : 0);
    Count(suite, "skipped",
          outcome.verdict == Verdict::kSkipped || outcome.verdict == Verdict::kDeviates ? 1 : 0);
    AddCase(outcome, suite);
  }
  std::ostringstream text;
  document.save(text, " ");
  return text.str();
}

}  // namespace kioctl::conform
