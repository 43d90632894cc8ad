// What a command prints: tables and colours on a terminal, plain text in a pipe, or JSON.
#ifndef CTL_OUTPUT_H
#define CTL_OUTPUT_H

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "failure.h"

namespace kioctl {

enum class Tone { kPlain, kGood, kBad, kQuiet, kBold };

using Row = std::vector<std::string>;

class Output {
 public:
  // `colour` is "always", "never", or "auto": on a terminal, unless NO_COLOR is set. `router` marks
  // what is printed when there are several; it is empty otherwise.
  Output(bool json, const std::string& colour, std::string router);

  bool json() const { return json_; }
  bool colour() const { return colour_; }

  // A result that has a form of its own.
  void Raw(const std::string& text) const;

  // The result of a command for --json.
  void Json(nlohmann::json value) const;

  // The result for people. Nothing comes of these with --json.
  void Line(const std::string& text, Tone tone = Tone::kPlain) const;
  // On a terminal with a head and in columns, the last of which is cut. In a pipe a row is a line
  // of cells with tabs between them. `tones` are those of the rows, if they have any.
  void Table(const Row& head, const std::vector<Row>& rows,
             const std::vector<Tone>& tones = {}) const;

  // The columns of the terminal; 0 for a pipe.
  size_t width() const;

  // What is said besides the result, on standard error.
  void Note(const std::string& text) const;
  void Fail(const Failure& failure) const;

 private:
  bool json_;
  bool terminal_;
  bool colour_;
  bool error_colour_;
  std::string router_;
};

// A text that shows control characters instead of sending them to a terminal.
std::string Printable(const std::string& text);

// Whether a byte of UTF-8 goes on with a character.
bool IsContinuation(char c);

// A text of at most so many columns, with a mark where it is cut.
std::string CutTo(const std::string& text, size_t columns);

// A bar on standard error when that is a terminal. Otherwise each sight is a line there.
class Progress {
 public:
  Progress(std::string what, std::chrono::seconds promised, bool silent);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Tells what is seen now. `passed` is the time since the beginning.
  void Show(const std::string& sight, std::chrono::milliseconds passed);

 private:
  std::string what_;
  std::chrono::seconds promised_;
  bool silent_;
  bool terminal_;
  std::string last_sight_;
  bool drawn_ = false;
};

}  // namespace kioctl

#endif  // CTL_OUTPUT_H
