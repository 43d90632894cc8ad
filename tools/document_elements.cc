#include "document_elements.h"

#include "field_text.h"
#include "meanings.h"

namespace kio::tools {
namespace {

using settings::Group;
using settings::Versions;

// A step of the parser: it looks for a block, or reads the fields of a group from the last block.
struct Step {
  const char* block = "";  // path; empty for fields
  const char* when = "";
  const char* meaning = "";  // of a block or of "Configurable"
  bool is_flag = false;      // an integer that may be left out, and no block
  SectionId section = SectionId::kDevice;
  Table<Field> table = {};
  Group group = Group::kDeviceOnly;
  Versions versions = Versions::kEvery;
  const char* prefix = nullptr;  // of the fields, when it is not the section's
};

constexpr Step Fields(const Table<Field>& table, Group group, const char* when = "",
                      Versions versions = Versions::kEvery, const char* prefix = nullptr) {
  return {.when = when,
          .section = table.section,
          .table = table,
          .group = group,
          .versions = versions,
          .prefix = prefix};
}

constexpr Step Block(const char* path, const char* when, const char* meaning,
                     Versions versions = Versions::kEvery) {
  return {.block = path, .when = when, .meaning = meaning, .versions = versions};
}

constexpr Step Flag(const char* path, const char* meaning) {
  return {.block = path, .meaning = meaning, .is_flag = true};
}

constexpr const char* kExtenderPrefix = "Device/ExtenderSite/";
constexpr Table<Field> TableOf(SectionId section) {
  return {section, settings::RowOf(section).fields};
}
constexpr auto kDevice = TableOf(SectionId::kDevice);
constexpr auto kUplink = TableOf(SectionId::kUplink);
constexpr auto kSite = TableOf(SectionId::kSite);
constexpr auto kRadio = TableOf(SectionId::kRadio);
constexpr auto kAccess = TableOf(SectionId::kAccess);

constexpr const char* kNotCloning = "not in cloning mode";
constexpr const char* kSurveyless = "`Survey` is 0";

constexpr Step kSettings[] = {
    Block("specVersion", "always", "The format version of the document."),
    Fields(TableOf(SectionId::kVersion), Group::kDeviceOnly),
    Block("Device", "`/zentrolinks/configurable` is not 0", "All settings."),
    Flag("Device/Configurable",
         "0 leaves everything as it is: nothing more is read, and the answer is 0. Not looked at "
         "in cloning mode."),
    Fields(kDevice, Group::kBasic, kNotCloning),
    Block("Device/UpLinkConnection", "`/uplink/configurable` is 1; not in cloning mode",
          "The uplink."),
    Flag("Device/UpLinkConnection/Configurable", "0 leaves the uplink as it is."),
    Fields(kUplink, Group::kBasic),
    Fields(kUplink, Group::kLogin, "`ConnType` is PPPoE or PPPoA"),
    Fields(kUplink, Group::kAddress, "`ConnType` is Static"),
    Block("Device/UpLinkConnection/DSL", "`HardwareType` is ADSL, VDSL or DSL",
          "The provider. With the type DSL it is read, but neither verified nor applied.",
          Versions::kNot10),
    Block("Device/UpLinkConnection/DSL", "`HardwareType` is ADSL, VDSL or DSL",
          "The circuit. With the types ADSL and VDSL nothing in it is read, and the provider that "
          "the "
          "record holds from an earlier full snapshot is verified.",
          Versions::kOnly10),
    Fields(TableOf(SectionId::kDsl), Group::kProvider, "", Versions::kNot10),
    Fields(TableOf(SectionId::kDsl), Group::kCircuit, "`HardwareType` is DSL", Versions::kOnly10),
    Block("Device/UpLinkConnection/APN", "`HardwareType` is WWanAPN", "The mobile provider.",
          Versions::kNot10),
    Block("Device/UpLinkConnection/APN", "`HardwareType` is WWanAPN",
          "Nothing in it is read, and the provider that the record holds from an earlier full "
          "snapshot "
          "is verified.",
          Versions::kOnly10),
    Fields(TableOf(SectionId::kApn), Group::kProvider, "", Versions::kNot10),
    Block("Device/UpLinkConnection/ExtenderSite", "`HardwareType` is WWan802.11",
          "The upstream network."),
    Fields(kSite, Group::kBasic),
    Fields(kSite, Group::kDetail, kSurveyless),
    Fields(kDevice, Group::kExtender, kNotCloning, Versions::kOnly10),
    Block("Device/ExtenderSite", "`ExtenderEnbl` is 1 or 3 and `HardwareType` is Ethernet",
          "The upstream network of an extender.", Versions::kOnly10),
    Fields(kSite, Group::kBasic, "", Versions::kOnly10, kExtenderPrefix),
    Fields(kSite, Group::kDetail, kSurveyless, Versions::kOnly10, kExtenderPrefix),
    Fields(kDevice, Group::kRoaming, "`/zentrolinks/easyroaming` is 1", Versions::kNot10),
    Block("Device/Wireless{band}",
          "the radio exists and `/lan/wireless{band}:1/configurable` is not 0", "A radio."),
    Flag("Device/Wireless{band}/Configurable", "0 leaves the radio as it is."),
    Fields(kRadio, Group::kBasic),
    Fields(kRadio, Group::kDetail, "", Versions::kNot10),
    Block("Device/Wireless{band}/AccessControl", "", "The access control of the radio.",
          Versions::kNot10),
    Fields(kAccess, Group::kBasic, "", Versions::kNot10),
    Fields(kAccess, Group::kDetail, "`WlAcEnbl` is 1", Versions::kNot10),
    {.block = "Device/Wireless{band}/AccessControl/AcRule",
     .when = "`WlAcEnbl` is 1; 0 to 40 times",
     .meaning = "A rule. The document's rules replace those of the store.",
     .section = SectionId::kRule,
     .versions = Versions::kNot10},
    Fields(TableOf(SectionId::kRule), Group::kBasic, "", Versions::kNot10),
    Block("Device/SafetyVyr", "`/zentrolinks/safetyvyr` is 1",
          "The security service. In cloning mode it must be there, but is neither verified nor "
          "applied."),
    Fields(TableOf(SectionId::kSafety), Group::kBasic),
};

DocumentElement FieldElement(const Step& step, const Field& field) {
  const SectionInstance instance{.section = step.section};
  DocumentElement element;
  const std::string prefix = step.prefix != nullptr ? step.prefix : ElementPrefix(instance);
  element.path = WithPlaceholders(prefix + Text(field.element));
  element.when = step.when;
  element.is_required = field.optional != settings::Optional::kAlways;
  if (field.optional == settings::Optional::kWhileCloning) {
    element.when = Joined({element.when, "may be missing in cloning mode"}, "; ");
  }
  const bool is_text = field.member.type == settings::Member::Type::kText;
  element.type = is_text ? "text" : "integer";
  element.range = RangeOf(field, instance);
  element.words = WordList(field);
  if (is_text) {
    element.limit =
        field.document_limit != 0 ? field.document_limit : field.member.size - std::size_t{1};
  }
  if (!field.node.empty()) {
    element.node = WithPlaceholders(NodePrefix(instance) + Text(field.node));
  }
  const variables::Variable* const variable = VariableOf(step.section, field);
  if (variable != nullptr) {
    element.variable = NamePrefix(step.section, 0) + Text(variable->name());
  }
  element.fault = WithPlaceholders(
      FaultPrefix(instance) + Text(field.fault_name.empty() ? field.element : field.fault_name));
  element.meaning = MeaningOf(step.section, field);
  element.field = &field;
  return element;
}

DocumentElement BlockElement(const Step& step) {
  DocumentElement element;
  element.path = step.block;
  // A rule need not be there; one that is has its fields.
  element.is_required = !step.is_flag && step.section != SectionId::kRule;
  element.is_block = !step.is_flag;
  element.type = step.is_flag ? "integer" : "block";
  element.when = step.when;
  element.meaning = step.meaning;
  return element;
}

std::vector<DocumentElement> SettingsElements(bool version10) {
  std::vector<DocumentElement> elements;
  for (const Step& step : kSettings) {
    if (!settings::IsIn(step.versions, version10)) {
      continue;
    }
    if (step.block[0] != '\0') {
      elements.push_back(BlockElement(step));
      continue;
    }
    for (const Field& field : step.table) {
      if (field.group == step.group && settings::IsIn(field.versions, version10)) {
        elements.push_back(FieldElement(step, field));
      }
    }
  }
  return elements;
}

// The firmware list has no table in the library: its elements are those of the searches in
// src/firmware/firmware_list.cc.
std::vector<DocumentElement> FirmwareElements() {
  const std::string entry = "FirmwareList/Firmware";
  const auto block = [](const std::string& path, bool required, const std::string& when,
                        const std::string& meaning) {
    return DocumentElement{.path = path,
                           .is_required = required,
                           .when = when,
                           .is_block = true,
                           .type = "block",
                           .meaning = meaning};
  };
  const auto text = [](const std::string& path, bool required, const std::string& when,
                       const std::string& range, std::size_t limit, const std::string& node,
                       const std::string& meaning) {
    return DocumentElement{.path = path,
                           .is_required = required,
                           .when = when,
                           .type = "text",
                           .range = range,
                           .limit = limit,
                           .node = node,
                           .meaning = meaning};
  };
  const auto number = [](const std::string& path, const std::string& value) {
    return DocumentElement{
        .path = path, .type = "integer", .range = value, .meaning = "1.0 alone."};
  };
  const std::string mac = "/fwupgradeinfo/devicemac";
  const std::string file = "/fwupgradeinfo/currfwfilename";
  return {
      block("specVersion", true, "always", "The format version of the list."),
      number("specVersion/major", "1"),
      number("specVersion/minor", "0"),
      block("FirmwareList", true, "always", "The entries; the first that fits is taken."),
      block(entry, false, "0 to 100 times", "An entry."),
      block(entry + "/MacList", false, "one of the two lists at least",
            "The routers that the entry is for."),
      text(entry + "/MacList/MAC", false, "0 to 100 times", "a pattern", 17, mac,
           "Address of a router."),
      block(entry + "/MacList/MACs", false, "when no `MAC` fits; 0 to 100 times",
            "A range of addresses, compared as texts."),
      text(entry + "/MacList/MACs/Start", true, "", "a pattern", 17, mac, "First address."),
      text(entry + "/MacList/MACs/End", true, "", "a pattern", 17, mac, "Last address."),
      block(entry + "/MatchList", false, "one of the two lists at least",
            "The firmware that may be upgraded. With both lists, both must fit."),
      text(entry + "/MatchList/Match", false, "0 to 100 times", "a pattern", 127, file,
           "File name of a running firmware."),
      text(entry + "/FwURL", true, "the entry fits", "begins with a slash", 127,
           "/fwupgradeinfo/newfw/fileurl",
           "Path of the image on the server. The limit holds for the server's address and the "
           "path together."),
      text(entry + "/NotesURL", true, "the entry fits", "begins with a slash", 127,
           "/fwupgradeinfo/newfw/notesurl", "Path of the release notes, under the same limit."),
  };
}

std::string RequiredCell(const DocumentElement& element) {
  return element.is_required ? "yes" : "no";
}

}  // namespace

std::vector<DocumentElement> ListDocumentElements(DocumentKind kind) {
  return kind == DocumentKind::kFirmwareList ? FirmwareElements()
                                             : SettingsElements(kind == DocumentKind::kVersion10);
}

std::string DocumentTable(const std::vector<DocumentElement>& elements) {
  std::string table =
      "| Element | Required | When | Type, limit | Range, words | Meaning | Node | Variable |\n"
      "|---|---|---|---|---|---|---|---|\n";
  for (const DocumentElement& element : elements) {
    const std::string limit = element.limit == 0 ? "" : std::to_string(element.limit);
    const std::string range = element.words.empty() ? element.range : element.words;
    table += "| " + Code(element.path) + " | " + RequiredCell(element) + " | " + element.when +
             " | " + Joined({element.type, limit}, ", ") + " | " + range + " | " + element.meaning +
             " | " + Code(element.node) + " | " + Code(element.variable) + " |\n";
  }
  return table;
}

}  // namespace kio::tools
