// The transcript of a scenario: what the library does as seen from outside, in order.
#ifndef KIO_DIFFERENTIAL_TRANSCRIPT_H
#define KIO_DIFFERENTIAL_TRANSCRIPT_H

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kio::differential {

// A part of an event: a text, or a number in decimal.
class Part {
 public:
  // NOLINTBEGIN(google-explicit-constructor): parts are written as what they are.
  Part(std::string_view text) : view_(text) {}
  Part(const char* text) : view_(text != nullptr ? text : "(null)") {}
  Part(const std::string& text) : view_(text) {}
  template <std::integral Number>
  Part(Number number) : number_(std::to_string(number)), is_number_(true) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] std::string_view view() const {
    return is_number_ ? std::string_view(number_) : view_;
  }
  [[nodiscard]] bool is_number() const { return is_number_; }

 private:
  std::string_view view_;
  std::string number_;
  bool is_number_ = false;
};

using Parts = std::initializer_list<Part>;

class Transcript {
 public:
  // Begins a scenario. There is always a digest of the events; `keep_text` keeps their text too.
  void Begin(bool keep_text);

  // Something that the library did. It is part of the comparison.
  void Event(std::string_view name, Parts parts);
  // Something that the scenario did. It is printed for readers and not compared.
  void Note(std::string_view name, Parts parts);

  [[nodiscard]] bool keeps_text() const { return keeps_text_; }
  [[nodiscard]] std::uint64_t digest() const { return digest_; }
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  void Mix(std::string_view bytes);
  void AppendLine(std::string_view mark, std::string_view name, Parts parts);

  bool keeps_text_ = false;
  std::uint64_t digest_ = 0;
  std::string text_;
};

// The transcript of the running scenario.
Transcript& TheTranscript();

inline void Event(std::string_view name, Parts parts) { TheTranscript().Event(name, parts); }
inline void Note(std::string_view name, Parts parts) { TheTranscript().Note(name, parts); }

// The text on one line: all but printable ASCII characters are escaped.
std::string Escaped(std::string_view text);

}  // namespace kio::differential

#endif
