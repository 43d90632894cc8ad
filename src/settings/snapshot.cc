// Filling the record from the store.

#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/store.h"
#include "platform/xml_coding.h"
#include "settings/record.h"
#include "settings/xml/element_path.h"

namespace kio::settings {
namespace {

using platform::ReadStoreInt;
using platform::StorePath;
using platform::StoreText;
using platform::TextView;

void SetFlag(void* section, const Member& member, bool flag) {
  if (member.type == Member::Type::kByte) {
    ByteOf(section, member) = static_cast<unsigned char>(flag);
  } else {
    IntOf(section, member) = static_cast<int>(flag);
  }
}

unsigned char CloningLevel(int node) {
  // Quirk "byte-arithmetic": 256 counts as 0.
  const auto level = static_cast<unsigned char>(node);
  return level < 3 ? level : 0;
}

void LoadText(const Field& field, void* section, const char* path) {
  char* const text = TextOf(section, field.member);
  const StoreText stored(path);
  if (field.load == Load::kRule) {
    // As many characters are decoded as the member has bytes; a longer result is cut.
    char rule[128];
    const std::size_t limit = std::min(sizeof(rule), stored.view().size());
    const std::size_t size = platform::DecodeXml(rule, stored.view(), limit);
    platform::CopyText(text, field.member.size, TextView(rule, size));
    return;
  }
  platform::CopyText(text, field.member.size, stored.view());
  if (field.load == Load::kTrimmed) {
    trim(text);
  }
  if (field.has_words()) {
    IntOf(section, field.code) = SearchKeyArray(text, field.words);
  }
}

void LoadField(const Field& field, void* section, const char* path) {
  switch (field.load) {
    case Load::kInteger:
      IntOf(section, field.member) = ReadStoreInt(path, field.absent);
      break;
    case Load::kIsOne:
      SetFlag(section, field.member, StrCmpWithXStr("1", path, 1) == 0);
      break;
    case Load::kIsNotZero:
      SetFlag(section, field.member, StrCmpWithXStr("0", path, 1) != 0);
      break;
    case Load::kCloningLevel:
      ByteOf(section, field.member) = CloningLevel(ReadStoreInt(path));
      break;
    default:
      // The kinds of texts: what is never loaded does not come here.
      LoadText(field, section, path);
      break;
  }
}

// Fills the fields of a table that this kind of snapshot fills.
void LoadFields(FieldTable table, Snapshot snapshot, void* section, StorePath& nodes) {
  for (const Field& field : table) {
    if (field.load != Load::kNever && field.snapshot == snapshot) {
      LoadField(field, section, nodes.Node(field.node));
    }
  }
}

// Fills the fields of a section.
void LoadSection(const SectionInstance& instance, Snapshot snapshot) {
  SectionPath nodes(instance.section, instance.radio);
  if (instance.section == SectionId::kRule) {
    nodes.SelectInstance(instance.index);
  }
  LoadFields(RowOf(instance.section).fields, snapshot, StructureOf(instance), nodes);
}

// Fills the rules of a section's texts, which stand in the record itself.
void LoadRules(SectionId section) {
  SectionPath nodes(section);
  LoadFields(RowOf(section).rules, Snapshot::kEvery, &Record(), nodes);
}

void LoadFeatures() {
  StorePath nodes("");
  for (const Field& field : kFeatureFields) {
    if (IsIn(field.versions, IsVersion10())) {
      LoadField(field, &Record(), nodes.Node(field.node));
    } else {
      ByteOf(&Record(), field.member) = 0;
    }
  }
}

void LoadAccessControl(int radio) {
  RssWlan& wlan = RadioOf(radio);
  JoinPath(wlan.accessControlPath, wlan.path, RowOf(SectionId::kAccess).element);
  LoadSection({SectionId::kAccess, radio}, Snapshot::kFullOnly);
  // Quirk "rule-count-below-configurable": the number of rules is looked for below the radio's
  // configurable node, where there normally is none.
  wlan.wlAcRuleNo =
      ReadStoreInt(SectionPath(SectionId::kRadio, radio, "/configurable/acrule#").c_str());
  if (wlan.wlAcRuleNo < 0) {
    wlan.wlAcMode = 0;
  }
  // Quirk "rules-filled-from-one": rule 1 of the store goes to entry 1; entry 0 is left alone, and
  // the last entry is the last one filled.
  for (int number = 1; number <= wlan.wlAcRuleNo && number < kRuleCapacity; ++number) {
    JoinPath(wlan.acRule[number].path, wlan.accessControlPath, RowOf(SectionId::kRule).element);
    LoadSection({SectionId::kRule, radio, number}, Snapshot::kFullOnly);
  }
}

void LoadRadio(int radio, bool full) {
  RssWlan& wlan = RadioOf(radio);
  platform::TextBuffer path(wlan.path);
  path.Append(Record().devicePath).Append('/');
  RowText(RowOf(SectionId::kRadio).element, radio).AppendTo(path);
  SectionPath nodes(SectionId::kRadio, radio);
  const auto state =
      static_cast<signed char>(ReadStoreInt(nodes.Node(RowOf(kWlanFields, "WlEnbl").node)));
  const bool exists = state == 0 || state == 1 || state == 3;
  (radio == 0 ? Record().wlan24Feature : Record().wlan5Feature) =
      static_cast<unsigned char>(exists);
  wlan.configurable = exists ? StrCmpWithXStr("0", nodes.Node("/configurable"), 1) : 0;
  if (!exists && !full) {
    return;
  }
  LoadSection({SectionId::kRadio, radio}, Snapshot::kEvery);
  if (full) {
    LoadSection({SectionId::kRadio, radio}, Snapshot::kFullOnly);
    LoadAccessControl(radio);
  }
}

void LoadUplink(bool full) {
  RssUpLink& uplink = Record().upLink;
  JoinPath(uplink.path, Record().devicePath, RowOf(SectionId::kUplink).reported);
  LoadSection({SectionId::kUplink}, Snapshot::kEvery);
  LoadRules(SectionId::kUplink);
  if (!full) {
    return;
  }
  LoadSection({SectionId::kUplink}, Snapshot::kFullOnly);
  SetUplinkPaths();
  for (const Section& section : kSections) {
    if (section.parent == SectionId::kUplink) {
      LoadSection({section.id}, Snapshot::kFullOnly);
    }
  }
}

void LoadRecord(bool full) {
  LoadSection({SectionId::kVersion}, Snapshot::kEvery);
  Record().specVer = CombinedVersion(Record().specMajor, Record().specMinor);
  LoadFeatures();
  platform::CopyText(Record().devicePath, RowOf(SectionId::kDevice).element);
  // The order of the store calls is fixed: radios, device, uplink. The device's rules are loaded
  // after all of its fields, those of the uplink before the fields of full snapshots.
  for (int radio = 0; radio < kRadioCount; ++radio) {
    LoadRadio(radio, full);
  }
  LoadSection({SectionId::kDevice}, Snapshot::kEvery);
  if (full) {
    LoadSection({SectionId::kDevice}, Snapshot::kFullOnly);
  }
  LoadRules(SectionId::kDevice);
  LoadUplink(full);
  if (full) {
    RssSafetyVyr& safety = Record().safetyVyr;
    JoinPath(safety.path, Record().devicePath, RowOf(SectionId::kSafety).element);
    LoadSection({SectionId::kSafety}, Snapshot::kFullOnly);
  }
}

}  // namespace
}  // namespace kio::settings

void restore_XmlRssStatus(int full) {
  kio::platform::LogEntry("restore_XmlRssStatus");
  kio::settings::LoadRecord(full != 0);
}
