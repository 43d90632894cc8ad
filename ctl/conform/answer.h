// What a router answers, with what a case expects of it.
#ifndef CTL_CONFORM_ANSWER_H
#define CTL_CONFORM_ANSWER_H

#include <map>
#include <string>

#include "conform/value.h"

namespace kioctl::conform {

// Ends a case: the router has not done what is promised.
struct Broken {
  std::string what;
};

// Ends a case that this router gives no occasion for.
struct Unfit {
  std::string why;
};

[[noreturn]] void Break(const std::string& what);
[[noreturn]] void Skip(const std::string& why);
void Expect(bool holds, const std::string& what);
void SkipUnless(bool holds, const std::string& why);

// A text for a message: cut, with control characters shown.
std::string Shown(const std::string& text);

struct ResultText {
  int code = 0;
  std::string message;
  long wait = 0;
};

struct StepText {
  int result = 0;
  std::string version;
};

struct Answer {
  int status = 0;
  std::string body;
  std::map<std::string, std::string> headers;  // the names in lower case
  std::string call;                            // such as "GET /device"

  std::string Header(const std::string& name) const;

  // Each of these breaks the case unless it is so.
  const Answer& Is(int expected) const;
  const Answer& HasType(const std::string& type) const;
  const Answer& Has(const std::string& header) const;
  const Answer& IsOneLine() const;
  const Answer& HasCode(int code) const;  // the line begins with the code
  Value Json() const;
  ResultText Result() const;
  StepText Step() const;
  // The same with a code that is expected.
  ResultText Result(int code) const;
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_ANSWER_H
