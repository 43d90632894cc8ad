// What the cases of several groups share.
#ifndef CTL_CONFORM_CASE_TOOLS_H
#define CTL_CONFORM_CASE_TOOLS_H

#include <string>

#include "conform/case.h"
#include "conform/document.h"

namespace kioctl::conform {

enum HttpStatus {
  kGood = 200,
  kEmpty = 204,
  kNotModified = 304,
  kMalformed = 400,
  kStranger = 401,
  kDenied = 403,
  kAbsent = 404,
  kBadMethod = 405,
  kTooSlow = 408,
  kInTheWay = 409,
  kOtherSettings = 412,
  kTooLong = 413,
  kBadType = 415,
  kOtherHost = 421,
  kRefusedValue = 422,
  kThrottled = 429,
  kNoPlace = 503,
};

// The codes of the library.
enum Code {
  kDoneCode = 0,
  kVersionCode = 1,
  kLockedCode = 1,
  kMissingCode = 2,
  kNotTakenCode = 2,
  kInvalidCode = 3,
  kLengthCode = 10,
  kCharacterCode = 11,
};

inline constexpr char kNameVariable[] = "/vars/rss_DeviceName";
inline constexpr char kNameElement[] = "Device/DeviceName";

bool Contains(const std::string& text, const std::string& part);

// The name of the router, as it stands in its store.
std::string NameOf(Conversation* talk);

// Another name. Skips the case when the router leaves all as it is.
std::string OtherName(Conversation* talk);

// The id of what was applied last, empty without one.
std::string LastApply(Conversation* talk);

// A document that gives the router this name.
Document Named(Conversation* talk, const std::string& name);

// The forecast of a document.
Value Forecast(Conversation* talk, const Document& document, const std::string& query = "");

// Sends a document and waits until it is in force. Skips the case before that when it would drop
// the link of this machine.
Answer Apply(Conversation* talk, const Document& document, const std::string& query = "");

// The same without the wait.
Answer ApplyAndGo(Conversation* talk, const Document& document, const std::string& query = "");

// A radio that documents may change, as in "Wireless2.4".
std::string ARadio(Conversation* talk);

// The variable of a radio, such as "rss_Wl2_Channel" for Channel.
std::string RadioVariable(const std::string& radio, const std::string& element);

// Skips the case unless all that is set by variables can be applied, and restored.
void SkipUnlessVariablesApply(Conversation* talk);

// The bodies of a batch that sets the name and applies it.
std::string NameBatch(const std::string& name);

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_CASE_TOOLS_H
