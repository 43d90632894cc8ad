// From a name to the one who serves it.

#include "kioapp/variables.h"
#include "platform/log.h"
#include "platform/store.h"
#include "settings/record.h"
#include "variables/place.h"

namespace kio::variables {
namespace {

constexpr TextView kPrefix = "rss_";
constexpr TextView kActionPrefix = "rss_Act_";
constexpr std::size_t kGroupSize = 3;

bool StartsWith(TextView text, TextView prefix) {
  return text.size() >= prefix.size() &&
         std::memcmp(text.data(), prefix.data(), prefix.size()) == 0;
}

TextView Behind(TextView text, std::size_t count) {
  text.remove_prefix(count);
  return text;
}

bool HasMoreParts(TextView text) { return text.find('_') != TextView::npos; }

unsigned int Serve(const Place& place, TextView name, const Request& request) {
  const Variable* const variable = FindVariable(place.section, name);
  if (variable == nullptr) {
    return KIOAPP_VAR_REFUSED;
  }
  return variable->field != nullptr ? ServeField(*variable, place, request)
                                    : ServeLive(*variable, place, request);
}

constexpr bool IsDigit(char character) { return character >= '0' && character <= '9'; }

// A part made of `letter` and two digits, and what follows it: "R07_MAC".
struct IndexedPart {
  int index = -1;  // negative when the text does not begin with such a part
  TextView rest;

  IndexedPart(TextView text, char letter) {
    constexpr std::size_t kSize = 4;
    if (text.size() >= kSize && text[0] == letter && IsDigit(text[1]) && IsDigit(text[2]) &&
        text[3] == '_') {
      index = (text[1] - '0') * 10 + (text[2] - '0');
      rest = Behind(text, kSize);
    }
  }
};

unsigned int ServeUplink(TextView name, const Request& request) {
  struct SubSection {
    TextView prefix;
    Section section;
  };
  constexpr SubSection kSubSections[] = {
      {"Ets_", Section::kSite}, {"Dsl_", Section::kDsl}, {"Apn_", Section::kApn}};
  // Quirk "refused-before-it-is-known": the name may be no variable's; a radio does the same.
  if (request.writes() && rssXmlData.upLink.configurable == 0) {
    return KIOAPP_VAR_NOT_CONFIGURABLE;
  }
  for (const SubSection& sub : kSubSections) {
    if (StartsWith(name, sub.prefix)) {
      return Serve({sub.section}, Behind(name, sub.prefix.size()), request);
    }
  }
  return Serve({Section::kUplink}, name, request);
}

unsigned int ServeRadio(int radio, TextView name, const Request& request) {
  constexpr TextView kAccessPrefix = "Acl_";
  const RssWlan& wlan = rssXmlData.wlan[radio];
  if (request.writes() && wlan.configurable == 0) {
    return KIOAPP_VAR_NOT_CONFIGURABLE;
  }
  if (!StartsWith(name, kAccessPrefix)) {
    return Serve({Section::kRadio, radio}, name, request);
  }
  name.remove_prefix(kAccessPrefix.size());
  if (!HasMoreParts(name)) {
    return Serve({Section::kAccess, radio}, name, request);
  }
  const IndexedPart rule(name, 'R');
  // The count is whatever was set; the record holds no more than its own number of rules.
  if (rule.index < 0 || rule.index >= settings::HeldRules(wlan)) {
    return KIOAPP_VAR_REFUSED;
  }
  return Serve({Section::kRule, radio, rule.index}, rule.rest, request);
}

unsigned int ServeSurvey(TextView name, const Request& request) {
  if (!HasMoreParts(name)) {
    return Serve({Section::kSurvey}, name, request);
  }
  const IndexedPart site(name, 'S');
  if (site.index < 0 || site.index >= platform::ReadStoreInt("/wirelesssitesurvey/site#")) {
    return KIOAPP_VAR_REFUSED;
  }
  return Serve({Section::kSurveySite, 0, site.index}, site.rest, request);
}

unsigned int ServeExtra(TextView name, const Request& request) {
  constexpr TextView kFirmwarePrefix = "Fwu_";
  constexpr TextView kSurveyPrefix = "Ssv_";
  if (!request.reads()) {
    return KIOAPP_VAR_REFUSED;
  }
  if (StartsWith(name, kFirmwarePrefix)) {
    return Serve({Section::kFirmware}, Behind(name, kFirmwarePrefix.size()), request);
  }
  if (StartsWith(name, kSurveyPrefix)) {
    return ServeSurvey(Behind(name, kSurveyPrefix.size()), request);
  }
  return KIOAPP_VAR_REFUSED;
}

// A name of several parts.
// Quirk "three-characters-choose": what else stands before the first '_' is not looked at.
unsigned int ServeGroup(TextView name, const Request& request) {
  const TextView tail = Behind(name, name.find('_') + 1);
  // Quirk "validate-before-the-group": the group has no say, be it configurable or not.
  if (request.reads() && tail == "Validate") {
    return Serve({Section::kDevice}, name, request);
  }
  const TextView group(name.data(), name.size() < kGroupSize ? name.size() : kGroupSize);
  if (group == "Act") {
    return RunAction(tail, request);
  }
  if (group == "Ver") {
    return Serve({Section::kVersion}, tail, request);
  }
  if (group == "Wl2") {
    return ServeRadio(0, tail, request);
  }
  if (group == "Wl5") {
    return ServeRadio(1, tail, request);
  }
  if (group == "Upl") {
    return ServeUplink(tail, request);
  }
  if (group == "Vyr") {
    return Serve({Section::kService}, tail, request);
  }
  if (group == "Ext") {
    return ServeExtra(tail, request);
  }
  return KIOAPP_VAR_REFUSED;
}

unsigned int ServeName(TextView name, const Request& request) {
  if (request.reads() && !StartsWith(name, kActionPrefix)) {
    // Quirk "reading-empties-before-writing": what was to be written or checked is lost by it.
    request.Answer("");
  }
  // Quirk "any-four-characters": no name but the bare prefix is refused for its beginning.
  if (name.size() < kPrefix.size() || name == kPrefix) {
    return KIOAPP_VAR_REFUSED;
  }
  name.remove_prefix(kPrefix.size());
  return HasMoreParts(name) ? ServeGroup(name, request) : Serve({Section::kDevice}, name, request);
}

unsigned int ServePath(const char* path, const Request& request) {
  const char* const converted = cvtRss_XmlPathVsVarName(path, 0);
  KIO_LOG(platform::kLogDetail, "rssVar='%s'\n", converted != nullptr ? converted : "(null)");
  if (converted == nullptr) {
    return KIOAPP_VAR_REFUSED;
  }
  // A batch that an action sets may convert other names meanwhile.
  char name[KIOAPP_VAR_SIZE];
  platform::CopyText(name, converted);
  return ServeName(name, request);
}

}  // namespace
}  // namespace kio::variables

unsigned int setget_RssVar(const char* name, char* value, int mode) {
  kio::platform::LogName("setget_RssVar");
  KIO_LOG(kio::platform::kLogDetail, "Name='%s',Val='%s', Act=%d\n",
          name != nullptr ? name : "(null)", value != nullptr ? value : "(null)", mode);
  if (name == nullptr || value == nullptr) {
    return KIOAPP_VAR_REFUSED;
  }
  const kio::variables::Request request{value, mode};
  return name[0] == '/' ? kio::variables::ServePath(name, request)
                        : kio::variables::ServeName(name, request);
}
