#include "output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace kioctl {
namespace {

constexpr size_t kUsualWidth = 80;

const char* CodeOf(Tone tone) {
  switch (tone) {
    case Tone::kGood:
      return "\033[32m";
    case Tone::kBad:
      return "\033[31m";
    case Tone::kQuiet:
      return "\033[2m";
    case Tone::kBold:
      return "\033[1m";
    case Tone::kPlain:
      break;
  }
  return "";
}

std::string Toned(const std::string& text, Tone tone, bool colour) {
  return colour && tone != Tone::kPlain ? CodeOf(tone) + text + "\033[0m" : text;
}

bool WantsColour(const std::string& colour, int file) {
  if (colour != "auto") {
    return colour == "always";
  }
  const char* const term = getenv("TERM");
  return isatty(file) == 1 && getenv("NO_COLOR") == nullptr &&
         (term == nullptr || std::string(term) != "dumb");
}

size_t WidthOf(int file) {
  winsize size = {};
  return ioctl(file, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualWidth;
}

// Characters of UTF-8, each of which takes a column for a cell of ours.
size_t Columns(const std::string& text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

// Standard output may be a full disk or a closed pipe.
void Print(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw Failure{ExitCode::kLocal, "the output cannot be written",
                  "look at the disk, or at the program that reads the output"};
  }
}

void PrintError(const std::string& text) { std::fputs(text.c_str(), stderr); }

}  // namespace

bool IsContinuation(char c) {
  constexpr unsigned kMask = 0xC0;
  constexpr unsigned kContinuation = 0x80;
  return (static_cast<unsigned char>(c) & kMask) == kContinuation;
}

std::string CutTo(const std::string& text, size_t columns) {
  if (Columns(text) <= columns) {
    return text;
  }
  std::string cut;
  for (const char c : text) {
    if (!IsContinuation(c) && Columns(cut) + 1 >= columns) {
      break;
    }
    cut += c;
  }
  return cut + "…";
}

std::string Printable(const std::string& text) {
  constexpr unsigned char kFirstPlain = 0x20;
  constexpr unsigned char kDelete = 0x7F;
  std::string printable;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    printable += byte < kFirstPlain || byte == kDelete ? '?' : c;
  }
  return printable;
}

Output::Output(bool json, const std::string& colour, std::string router)
    : json_(json),
      terminal_(isatty(STDOUT_FILENO) == 1),
      colour_(WantsColour(colour, STDOUT_FILENO)),
      error_colour_(WantsColour(colour, STDERR_FILENO)),
      router_(std::move(router)) {
  if (!json_ && !router_.empty()) {
    Line("# " + router_, Tone::kBold);
  }
}

void Output::Json(nlohmann::json value) const {
  if (!json_) {
    return;
  }
  constexpr int kIndent = 2;
  // Several routers: a line for each. A text that is not UTF-8 must not end the program.
  int indent = kIndent;
  if (!router_.empty()) {
    if (!value.is_object()) {
      value = {{"value", std::move(value)}};
    }
    value["router"] = router_;
    indent = -1;
  }
  Print(value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

void Output::Raw(const std::string& text) const { Print(text); }

void Output::Line(const std::string& text, Tone tone) const {
  if (!json_) {
    Print(Toned(text, tone, colour_) + "\n");
  }
}

size_t Output::width() const { return terminal_ ? WidthOf(STDOUT_FILENO) : 0; }

void Output::Table(const Row& head, const std::vector<Row>& rows,
                   const std::vector<Tone>& tones) const {
  if (json_) {
    return;
  }
  std::string text;
  if (!terminal_) {
    for (const Row& row : rows) {
      for (size_t i = 0; i < row.size(); ++i) {
        text += (i > 0 ? "\t" : "") + Printable(row[i]);
      }
      text += '\n';
    }
    Print(text);
    return;
  }
  constexpr size_t kGap = 2;
  std::vector<size_t> widths(head.size(), 0);
  const auto measure = [&widths](const Row& row) {
    for (size_t i = 0; i < row.size(); ++i) {
      widths.at(i) = std::max(widths[i], Columns(row[i]));
    }
  };
  measure(head);
  std::for_each(rows.begin(), rows.end(), measure);
  const size_t line_width = WidthOf(STDOUT_FILENO);
  const auto add = [&](const Row& row, Tone tone) {
    std::string line;
    for (size_t i = 0; i < row.size(); ++i) {
      const std::string cell = Printable(row[i]);
      const size_t begun = Columns(line);
      const bool is_last = i + 1 == row.size();
      line += is_last ? CutTo(cell, std::max(line_width, begun + widths[i] / 2) - begun) : cell;
      line.append(is_last ? 0 : widths[i] + kGap - Columns(cell), ' ');
    }
    text += Toned(line, tone, colour_) + "\n";
  };
  add(head, Tone::kBold);
  for (size_t i = 0; i < rows.size(); ++i) {
    add(rows[i], i < tones.size() ? tones[i] : Tone::kPlain);
  }
  Print(text);
}

void Output::Note(const std::string& text) const {
  PrintError(Toned(text, Tone::kQuiet, error_colour_) + "\n");
}

void Output::Fail(const Failure& failure) const {
  if (json_ && !failure.is_reported) {
    nlohmann::json error = failure.details;
    error["kind"] = KindOf(failure.code);
    error["what"] = failure.what;
    error["next"] = failure.next;
    Json({{"error", error}});
  }
  PrintError(Toned("kioctl: ", Tone::kBold, error_colour_) +
             Toned(Printable(failure.what), Tone::kBad, error_colour_) + "\n");
  if (!failure.next.empty()) {
    PrintError("  next: " + Printable(failure.next) + "\n");
  }
}

Progress::Progress(std::string what, std::chrono::seconds promised, bool silent)
    : what_(std::move(what)),
      promised_(promised),
      silent_(silent),
      terminal_(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (drawn_) {
    PrintError("\r\033[K");
  }
}

void Progress::Show(const std::string& sight, std::chrono::milliseconds passed) {
  if (silent_) {
    return;
  }
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(passed);
  std::string times = std::to_string(seconds.count()) + " s";
  if (promised_.count() > 0) {
    times += " of " + std::to_string(promised_.count()) + " s";
  }
  if (!terminal_) {
    if (sight != last_sight_) {
      PrintError(what_ + ": " + sight + " (" + times + ")\n");
    }
    last_sight_ = sight;
    return;
  }
  constexpr long kBar = 24;
  std::string bar;
  if (promised_.count() > 0) {
    const long full = std::min(kBar, kBar * passed.count() / (1000 * promised_.count()));
    bar = " [" + std::string(static_cast<size_t>(full), '#') +
          std::string(static_cast<size_t>(kBar - full), '.') + "]";
  }
  const std::string line = what_ + bar + " " + times + ", " + sight;
  PrintError("\r" + CutTo(line, WidthOf(STDERR_FILENO)) + "\033[K");
  drawn_ = true;
}

}  // namespace kioctl
