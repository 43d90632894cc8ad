#include "conform/outcome.h"

namespace kioctl::conform {
namespace {

// A text on one line of a comment or a description. "#" would begin a directive.
std::string OnALine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c == '#' || c == '\\') {
      line += '\\';
    }
    line += c == '\n' || c == '\r' ? ' ' : c;
  }
  return line;
}

// A text as a block of YAML.
std::string Block(const std::string& text) {
  std::string block;
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    std::erase_if(line, [](char c) { return static_cast<unsigned char>(c) < ' '; });
    block += "      " + line + "\n";
    at = end + 1;
  }
  return block;
}

}  // namespace

std::string TapHead(const Run& run, size_t cases) {
  return "TAP version 14\n1.." + std::to_string(cases) + "\n# " + OnALine(run.program) + ", " +
         OnALine(run.url) + ": " + OnALine(run.router) + ", " + run.order + "\n";
}

std::string TapLines(const Outcome& outcome, size_t number) {
  const bool is_bad = outcome.verdict == Verdict::kFailed || outcome.verdict == Verdict::kDeviates;
  std::string text =
      (is_bad ? "not ok " : "ok ") + std::to_string(number) + " - " + outcome.one->name;
  if (outcome.verdict == Verdict::kSkipped) {
    text += " # SKIP " + OnALine(outcome.why);
  } else if (!outcome.agreed.empty()) {
    text += " # TODO " + OnALine(outcome.agreed);
  }
  text += '\n';
  if (is_bad) {
    text += "  ---\n  promise: |\n" + Block(outcome.one->promise) + "  message: |\n" +
            Block(outcome.why) + "  said: |\n";
    for (const std::string& said : outcome.transcript) {
      text += Block(said);
    }
    text += "  ...\n";
  }
  return text;
}

std::string TapTail(const Run& run) {
  std::string text;
  for (const std::string& name : run.Gone()) {
    text += "# " + name + ": the deviation no longer happens\n";
  }
  if (!run.cut_short.empty()) {
    text += "Bail out! " + OnALine(run.cut_short) + "\n";
  }
  return text + "# " + run.Summary() + "\n";
}

}  // namespace kioctl::conform
