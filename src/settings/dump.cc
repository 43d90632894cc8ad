// Writing the record to the log.
//
// The rows of each section are walked. What no row describes, paths and the bookkeeping of an
// exchange, is written by code of its own between them.

#include <algorithm>

#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/record.h"

namespace kio::settings {
namespace {

using platform::kLogAction;
using platform::TextBuffer;

// Room for the longest line: two texts of a pair and their names.
constexpr std::size_t kLineSize = 384;

void AppendName(TextBuffer& line, const Field& field) {
  line.Append(field.dump_name.empty() ? field.element : field.dump_name);
}

void AppendValue(TextBuffer& line, const Field& field, void* section) {
  if (field.member.type == Member::Type::kText) {
    line.Append(TextOf(section, field.member));
  } else {
    line.AppendNumber(IntOf(section, field.member));
  }
}

// Writes the line of a field; of a pair, the next row's field stands in it as well.
void DumpField(const Field& field, void* section, const char* indent) {
  const bool is_quoted = field.dump == Dump::kQuoted || field.dump == Dump::kQuotedWithCode ||
                         field.dump == Dump::kQuotedPair;
  const Field* const second = IsPair(field.dump) ? &field + 1 : nullptr;
  const char separator = field.dump == Dump::kSlashPair ? '/' : ',';
  char text[kLineSize];
  TextBuffer line(text);
  AppendName(line, field);
  if (second != nullptr) {
    line.Append(separator);
    AppendName(line, *second);
  }
  line.Append(is_quoted ? "='" : "=");
  AppendValue(line, field, section);
  if (second != nullptr) {
    line.Append(separator);
    AppendValue(line, *second, section);
  }
  line.Append(is_quoted ? "'" : "");
  if (field.dump == Dump::kQuotedWithCode) {
    line.Append(',').AppendNumber(IntOf(section, field.code));
  }
  KIO_LOG(kLogAction, "%s+- %s\n", indent, text);
}

bool IsDumped(const Field& field) {
  // The address of a radio is written in version 1.0 as well, although no document of it holds one.
  const bool is_in_version =
      IsIn(field.versions, IsVersion10()) || &field == &RowOf(kWlanFields, "WirelessBSSID");
  return field.dump != Dump::kNever && is_in_version &&
         (field.group != Group::kRoaming || Record().easyRoamingFeature != 0);
}

// Writes the fields of a section: those of one group, or of all with kNone.
void DumpFields(const SectionInstance& instance, Group group, const char* indent) {
  const FieldTable table = RowOf(instance.section).fields;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const Field& field = table[i];
    if ((group == Group::kNone || field.group == group) && IsDumped(field)) {
      DumpField(field, StructureOf(instance), indent);
    }
    if (IsPair(field.dump)) {
      ++i;
    }
  }
}

void DumpHead() {
  KIO_LOG(kLogAction, "----RSSXML_BGN----\n");
  KIO_LOG(kLogAction, "%s\n", Record().specName);
  KIO_LOG(kLogAction, " +- Ver=%d.%d\n", Record().specMajor, Record().specMinor);
  KIO_LOG(kLogAction, "%s\n", Record().devicePath);
  KIO_LOG(kLogAction, " +- Configurable=%d\n", Record().configurable);
}

void DumpDevice() {
  DumpFields({SectionId::kDevice}, Group::kNone, " ");
  KIO_LOG(kLogAction, " +- wlanSurveyRestart=%d\n", Record().wlanSurveyRestart);
}

// Writes the section that goes with the uplink's hardware. In version 1.0, a device
// whose hardware has no section may extend another network.
void DumpHardwareSection() {
  SectionId section = HardwareSection();
  if (section == SectionId::kCount && IsVersion10() && Record().extenderEnbl != 2) {
    section = SectionId::kSite;
  }
  const RssUpLink& uplink = Record().upLink;
  const char* path = uplink.extenderSite.path;
  switch (section) {
    case SectionId::kCount:
      return;
    case SectionId::kDsl:
      path = uplink.dsl.path;
      break;
    case SectionId::kApn:
      path = uplink.apn.path;
      break;
    default:
      break;
  }
  KIO_LOG(kLogAction, "     +- %s\n", path);
  DumpFields({section}, section == SectionId::kSite ? Group::kNone : HardwareGroupDumped(),
             "         ");
}

void DumpUplink() {
  const RssUpLink& uplink = Record().upLink;
  KIO_LOG(kLogAction, " +- %s\n", uplink.path);
  DumpFields({SectionId::kUplink}, Group::kNone, "     ");
  KIO_LOG(kLogAction, "     +- restart='%d'\n", uplink.restart);
  DumpHardwareSection();
}

void DumpAccessControl(int radio) {
  const RssWlan& wlan = RadioOf(radio);
  KIO_LOG(kLogAction, "     +- %s\n", wlan.accessControlPath);
  DumpFields({SectionId::kAccess, radio}, Group::kBasic, "         ");
  if (wlan.wlAcEnbl != 1) {
    return;
  }
  DumpFields({SectionId::kAccess, radio}, Group::kDetail, "         ");
  for (int i = 0; i < HeldRules(wlan); ++i) {
    KIO_LOG(kLogAction, "         +- %s:%d\n", wlan.acRule[i].path, i + 1);
    DumpFields({SectionId::kRule, radio, i}, Group::kNone, "             ");
  }
}

void DumpRadio(int radio) {
  const RssWlan& wlan = RadioOf(radio);
  KIO_LOG(kLogAction, " +- %s\n", wlan.path);
  KIO_LOG(kLogAction, "     +- Configurable=%d\n", wlan.configurable);
  DumpFields({SectionId::kRadio, radio}, Group::kNone, "     ");
  if (!IsVersion10()) {
    KIO_LOG(kLogAction, "     +- restart=%d\n", wlan.restart);
    DumpAccessControl(radio);
  }
}

void DumpSafety() {
  const RssSafetyVyr& safety = Record().safetyVyr;
  KIO_LOG(kLogAction, " +- %s\n", safety.path);
  DumpFields({SectionId::kSafety}, Group::kNone, "     ");
  KIO_LOG(kLogAction, "     +- restart=%d\n", safety.restart);
}

// What stands in no section.
struct Flag {
  Member member;
  char name[19];  // here, so that the table has no addresses, which the loader would set
};

constexpr Flag kFlags[] = {
    {KIO_MEMBER(RssXmlData, apCloningOnly), "apCloningOnly"},
    {KIO_MEMBER(RssXmlData, apCloningFeature), "apCloningFeature"},
    {KIO_MEMBER(RssXmlData, fwUpgradeFeature), "fwUpgradeFeature"},
    {KIO_MEMBER(RssXmlData, easyRoamingFeature), "easyRoamingFeature"},
    {KIO_MEMBER(RssXmlData, safetyVyrFeature), "safetyVyrFeature"},
    {KIO_MEMBER(RssXmlData, wlan24Feature), "wlan24Feature"},
    {KIO_MEMBER(RssXmlData, wlan5Feature), "wlan5Feature"},
    {KIO_MEMBER(RssXmlData, tmpPath), "tmpPath"},
    {KIO_MEMBER(RssXmlData, scriptPath), "scriptPath"},
    {KIO_MEMBER(RssXmlData, saveflag), "saveflag"},
};
static_assert(std::ranges::all_of(kFlags, [](const Flag& flag) {
  return flag.member.type == Member::Type::kText || flag.member.type == Member::Type::kByte;
}));

void DumpFlags() {
  for (const Flag& flag : kFlags) {
    if (flag.member.type == Member::Type::kText) {
      KIO_LOG(kLogAction, "+- %s=%s\n", flag.name, TextOf(&Record(), flag.member));
    } else {
      KIO_LOG(kLogAction, "+- %s=%d\n", flag.name, ByteOf(&Record(), flag.member));
    }
  }
  KIO_LOG(kLogAction, "----RSSXML_END----\n");
}

}  // namespace
}  // namespace kio::settings

// Quirk "dump-shows-passwords": they stand in the log at this level.
void dump_RssXmlData(void) {
  using namespace kio::settings;  // NOLINT(google-build-using-namespace)
  if (!kio::platform::IsLogged(kio::platform::kLogAction)) {
    return;
  }
  DumpHead();
  if (kio::Record().apCloningOnly != 0) {
    DumpFields({SectionId::kDevice}, Group::kRoaming, " ");
  } else {
    DumpDevice();
    DumpUplink();
  }
  for (int radio = 0; radio < kRadioCount; ++radio) {
    if (RadioExists(radio)) {
      DumpRadio(radio);
    }
  }
  if (kio::Record().safetyVyrFeature != 0) {
    DumpSafety();
  }
  DumpFlags();
}
