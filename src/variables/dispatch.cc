// Routes a variable name to its handler.

#include "kioapp/variables.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/store.h"
#include "settings/record.h"
#include "variables/actions.h"
#include "variables/field_variables.h"
#include "variables/live_variables.h"

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

unsigned int Serve(const SectionInstance& instance, TextView name, const Request& request) {
  const Variable variable = FindVariable(instance.section, name);
  if (!variable.exists()) {
    return KIOAPP_VAR_REFUSED;
  }
  return variable.is_live() ? ServeLive(variable, instance, request)
                            : ServeField(variable, instance, request);
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

// How many rules or sites there are.
int HeldInstances(const SectionInstance& instance) {
  // The number of rules is a variable that may be set to anything, so it is limited to what the
  // record holds.
  return instance.section == SectionId::kRule ? settings::HeldRules(Record().wlan[instance.radio])
                                              : platform::ReadStoreInt(kSiteCountNode.data());
}

bool MayBeChanged(const SectionInstance& instance) {
  const settings::Member& switch_member = settings::RowOf(instance.section).configurable;
  return switch_member.size == 0 ||
         settings::IntOf(settings::StructureOf(instance), switch_member) != 0;
}

// Serves a name of a section or of one below it.
unsigned int ServeSection(const SectionInstance& instance, TextView name, const Request& request) {
  // Quirk "refused-before-it-is-known": whether there is such a variable is looked up later.
  if (request.writes() && !MayBeChanged(instance)) {
    return KIOAPP_VAR_NOT_CONFIGURABLE;
  }
  for (const settings::Section& row : settings::kSections) {
    if (row.parent != instance.section || row.id == instance.section) {
      continue;
    }
    if (row.first_instance == 0) {
      if (StartsWith(name, row.name)) {
        return ServeSection({row.id, instance.radio}, Behind(name, row.name.size()), request);
      }
      continue;
    }
    const IndexedPart part(name, row.name.front());
    if (part.index >= 0) {
      const SectionInstance found{row.id, instance.radio, part.index};
      if (part.index >= HeldInstances(found)) {
        return KIOAPP_VAR_REFUSED;
      }
      return Serve(found, part.rest, request);
    }
  }
  return Serve(instance, name, request);
}

// Whether `group` is the beginning of a section's prefix, in which '*' stands for the first
// character of the radio's word.
bool IsGroup(TextView prefix, TextView group, int radio) {
  for (std::size_t i = 0; i < group.size(); ++i) {
    if (group[i] != (prefix[i] == '*' ? settings::kRadioWords[radio][0] : prefix[i])) {
      return false;
    }
  }
  return group.size() == kGroupSize;
}

// Whether a name of several parts belongs to a section: the group and the tail begin with the two
// parts of the section's prefix.
bool BelongsTo(const settings::Section& row, int radio, TextView group, TextView tail) {
  return IsGroup(row.name, group, radio) && StartsWith(tail, Behind(row.name, kGroupSize + 1));
}

// A name of several parts; `tail` are those behind the first '_'.
// Quirk "three-characters-choose": what else stands before the first '_' is not looked at.
unsigned int ServeGroup(TextView name, TextView tail, const Request& request) {
  // Quirk "validate-before-the-group": the name may have any group, and it need not be
  // configurable.
  if (request.reads() && tail == "Validate") {
    return Serve({SectionId::kDevice}, name, request);
  }
  const TextView group(name.data(), name.size() < kGroupSize ? name.size() : kGroupSize);
  if (StartsWith(group, "Act")) {
    return RunAction(tail, request);
  }
  for (const settings::Section& row : settings::kSections) {
    if (row.name.empty() || row.name.front() != group.front() || !settings::IsTopmost(row)) {
      continue;
    }
    for (int radio = 0; radio < (row.of_radio ? settings::kRadioCount : 1); ++radio) {
      if (!BelongsTo(row, radio, group, tail)) {
        continue;
      }
      // A section without fields is not part of the settings: it is only read.
      if (row.fields.empty() && !request.reads()) {
        return KIOAPP_VAR_REFUSED;
      }
      return ServeSection({row.id, radio}, Behind(tail, row.name.size() - kGroupSize - 1), request);
    }
  }
  return KIOAPP_VAR_REFUSED;
}

unsigned int ServeName(TextView name, const Request& request) {
  if (request.reads() && !StartsWith(name, kActionPrefix)) {
    // Quirk "reading-empties-before-writing": the value that was to be written or checked is lost.
    request.Answer("");
  }
  // Quirk "any-four-characters": any four characters pass as the prefix, unless the name is the
  // bare prefix.
  if (name.size() < kPrefix.size() || name == kPrefix) {
    return KIOAPP_VAR_REFUSED;
  }
  name.remove_prefix(kPrefix.size());
  const void* const separator = std::memchr(name.data(), '_', name.size());
  if (separator == nullptr) {
    return Serve({SectionId::kDevice}, name, request);
  }
  const auto place = static_cast<const char*>(separator) - name.data();
  return ServeGroup(name, Behind(name, static_cast<std::size_t>(place) + 1), request);
}

unsigned int ServePath(const char* path, const Request& request) {
  const char* const converted = cvtRss_XmlPathVsVarName(path, 0);
  KIO_LOG(platform::kLogDetail, "rssVar='%s'\n", converted != nullptr ? converted : "(null)");
  if (converted == nullptr) {
    return KIOAPP_VAR_REFUSED;
  }
  // The result is copied: an action may set a batch, which converts other names.
  char name[KIOAPP_VAR_SIZE];
  platform::CopyText(name, converted);
  return ServeName(name, request);
}

}  // namespace
}  // namespace kio::variables

unsigned int setget_RssVar(const char* name, char* value, int mode) {
  KIO_LOG_NAMED("setget_RssVar", "Name='%s',Val='%s', Act=%d\n", name != nullptr ? name : "(null)",
                value != nullptr ? value : "(null)", mode);
  if (name == nullptr || value == nullptr) {
    return KIOAPP_VAR_REFUSED;
  }
  const kio::variables::Request request{value, mode};
  return name[0] == '/' ? kio::variables::ServePath(name, request)
                        : kio::variables::ServeName(name, request);
}
