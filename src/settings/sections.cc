#include "settings/sections.h"

namespace kio::settings {

RowText::RowText(platform::TextView text, int radio) : before(text) {
  const std::size_t star = text.find('*');
  if (star != platform::TextView::npos) {
    before = {text.data(), star};
    word = kRadioWords[radio];
    after = text;
    after.remove_prefix(star + 1);
  }
}

SectionPath::SectionPath(SectionId section, int radio, const char* rest)
    : SectionPath(RowText(RowOf(section).node, radio), rest) {}

// Proofs.

namespace {

consteval bool SectionsAreInOrder() {
  for (std::size_t i = 0; i < kSections.size(); ++i) {
    if (static_cast<std::size_t>(kSections[i].id) != i ||
        (static_cast<std::size_t>(kSections[i].parent) > i)) {
      return false;
    }
  }
  return kSections.size() == static_cast<std::size_t>(SectionId::kCount);
}
static_assert(SectionsAreInOrder());

// Whether sections with the same parent differ in element and prefix. So do those at the top, whose
// names are told apart by their first three characters (variables/dispatch.cc).
consteval bool SectionsAreTold() {
  for (std::size_t i = 1; i < kSections.size(); ++i) {
    for (std::size_t j = 1; j < i; ++j) {
      const Section& a = kSections[i];
      const Section& b = kSections[j];
      if ((a.parent == b.parent || (IsTopmost(a) && IsTopmost(b))) &&
          (a.element == b.element || a.name == b.name)) {
        return false;
      }
    }
  }
  return true;
}
static_assert(SectionsAreTold());

// Whether two tables are the same one. Their rows tell: pointers cannot be compared at compile time
// under every sanitizer.
consteval bool IsSameTable(FieldTable a, FieldTable b) {
  if (a.size() != b.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i].element != b[i].element || a[i].node != b[i].node ||
        a[i].member.offset != b[i].member.offset) {
      return false;
    }
  }
  return true;
}

// How many sections have a table, as their fields or as their rules.
consteval int SectionsWith(FieldTable table) {
  int count = 0;
  for (const Section& row : kSections) {
    count += static_cast<int>(IsSameTable(row.fields, table)) +
             static_cast<int>(IsSameTable(row.rules, table));
  }
  return count;
}

// Each table belongs to one section. The features are the device's, and loaded on their own.
consteval bool EachTableHasOneSection() {
  constexpr FieldTable kTables[] = {kVersionFields, kDeviceFields, kDeviceRules, kUplinkFields,
                                    kUplinkRules,   kDslFields,    kApnFields,   kSiteFields,
                                    kWlanFields,    kAccessFields, kRuleFields,  kSafetyFields};
  std::size_t used = 0;
  for (const Section& row : kSections) {
    used += static_cast<std::size_t>(!row.fields.empty()) +
            static_cast<std::size_t>(!row.rules.empty());
  }
  for (const FieldTable& table : kTables) {
    if (SectionsWith(table) != 1) {
      return false;
    }
  }
  return used == std::size(kTables) && SectionsWith(kFeatureFields) == 0;
}
static_assert(EachTableHasOneSection());

// A member of a section's structure that is no field: a path text or the bookkeeping of an
// exchange.
struct Bookkeeping {
  SectionId section;
  Member member;
};

constexpr Bookkeeping kBookkeeping[] = {
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, specName)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, specVer)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, devicePath)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, deviceRestart)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, roamingRestart)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, wlanSurveyRestart)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, saveflag)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, exeflag)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, pre_exeflag)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, exeWaitSec)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, setResult)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, setMsg)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, apCloningOnly)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, wlan24Feature)},
    {SectionId::kDevice, KIO_MEMBER(RssXmlData, wlan5Feature)},
    {SectionId::kUplink, KIO_MEMBER(RssUpLink, path)},
    {SectionId::kUplink, KIO_MEMBER(RssUpLink, restart)},
    {SectionId::kDsl, KIO_MEMBER(RssIsp, path)},
    {SectionId::kApn, KIO_MEMBER(RssIsp, path)},
    // The structure is that of DSL, and a mobile provider has no circuit.
    {SectionId::kApn, KIO_MEMBER(RssIsp, vpi)},
    {SectionId::kApn, KIO_MEMBER(RssIsp, vci)},
    {SectionId::kApn, KIO_MEMBER(RssIsp, encapsulationMode)},
    {SectionId::kApn, KIO_MEMBER(RssIsp, encapModeCode)},
    {SectionId::kSite, KIO_MEMBER(RssExtenderSite, path)},
    {SectionId::kRadio, KIO_MEMBER(RssWlan, configurable)},
    {SectionId::kRadio, KIO_MEMBER(RssWlan, path)},
    {SectionId::kRadio, KIO_MEMBER(RssWlan, restart)},
    {SectionId::kAccess, KIO_MEMBER(RssWlan, accessControlPath)},
    {SectionId::kRule, KIO_MEMBER(RssAcRule, path)},
    {SectionId::kSafety, KIO_MEMBER(RssSafetyVyr, path)},
    {SectionId::kSafety, KIO_MEMBER(RssSafetyVyr, restart)},
};

// What the rows of all sections and the bookkeeping claim of the record. They tile it: every byte
// that is not alignment belongs to exactly one of them.
class Coverage {
 public:
  consteval Coverage& Add(std::size_t base, FieldTable table) {
    for (const Field& field : table) {
      is_sound_ = is_sound_ && IsSound(field);
      Mark(base, field.member);
      if (field.has_words()) {
        Mark(base, field.code);
      }
    }
    return *this;
  }

  // Adds the sections of the record: the first radio and the first rule. The others have the same
  // layout.
  consteval Coverage& AddSections() {
    for (const Section& row : kSections) {
      is_sound_ = is_sound_ && HasUniqueElements(row.fields) && HasWholePairs(row.fields);
      Add(row.offset, row.fields).Add(0, row.rules);
    }
    for (const Bookkeeping& row : kBookkeeping) {
      Mark(RowOf(row.section).offset, row.member);
    }
    constexpr std::size_t kRules = offsetof(RssXmlData, wlan[0].acRule);
    Repeat(kRules, sizeof(RssAcRule), kRuleCapacity);
    Repeat(offsetof(RssXmlData, wlan), sizeof(RssWlan), kRadioCount);
    return *this;
  }

  // Where the first member lies that nothing claims; the size of the record when there is none.
  [[nodiscard]] consteval std::size_t FirstUnclaimed() const {
    // What is between members may only be padding: less than an integer, up to where one may begin.
    std::size_t gap = 0;
    for (std::size_t i = 0; i <= sizeof(RssXmlData); ++i) {
      if (i < sizeof(RssXmlData) && !is_marked_[i]) {
        ++gap;
      } else if (gap > 0) {
        if (gap >= alignof(int) || i % alignof(int) != 0) {
          return i - gap;
        }
        gap = 0;
      }
    }
    return sizeof(RssXmlData);
  }

  // Whether the rows fit themselves, each other and the record.
  [[nodiscard]] consteval bool is_sound() const { return is_sound_; }

 private:
  consteval void Mark(std::size_t base, const Member& member) {
    for (std::size_t i = base + member.offset; i < base + member.offset + member.size; ++i) {
      is_sound_ = is_sound_ && !is_marked_[i];
      is_marked_[i] = true;
    }
  }

  consteval void Repeat(std::size_t base, std::size_t size, std::size_t count) {
    for (std::size_t i = base + size; i < base + count * size; ++i) {
      is_marked_[i] = is_marked_[i - size];
    }
  }

  std::array<bool, sizeof(RssXmlData)> is_marked_ = {};
  bool is_sound_ = true;
};

consteval Coverage CoverRecord() { return Coverage().Add(0, kFeatureFields).AddSections(); }
static_assert(CoverRecord().is_sound());
static_assert(CoverRecord().FirstUnclaimed() == sizeof(RssXmlData),
              "a member of the record has neither a row nor a place in the bookkeeping; the "
              "comparison tells its offset");

}  // namespace
}  // namespace kio::settings
