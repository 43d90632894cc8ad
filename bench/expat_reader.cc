// Expat calls back for each element: its reader knows the leaves by the section that they stand in.
#include <expat.h>

#include <cstdlib>
#include <string_view>

#include "tree_readers.h"

namespace kio::bench {
namespace {

constexpr int kSectionDepth = 8;

struct Leaf {
  std::string_view name;
  int* number = nullptr;
  char* text = nullptr;
  int capacity = 0;
};

Leaf IntLeaf(std::string_view name, int& number) { return {name, &number}; }
template <int N>
Leaf TextLeaf(std::string_view name, char (&text)[N]) {
  return {name, nullptr, text, N};
}

class ExpatReader {
 public:
  explicit ExpatReader(Settings& out) : out_(out) {}

  static void XMLCALL Start(void* user, const XML_Char* name, const XML_Char** /*attributes*/) {
    static_cast<ExpatReader*>(user)->Open(name);
  }
  static void XMLCALL End(void* user, const XML_Char* /*name*/) {
    static_cast<ExpatReader*>(user)->Close();
  }
  static void XMLCALL Data(void* user, const XML_Char* data, int size) {
    static_cast<ExpatReader*>(user)->Append({data, static_cast<std::size_t>(size)});
  }

 private:
  enum class Section { kOther, kVersion, kDevice, kUplink, kProvider, kRadio, kSafety, kRule };

  void Open(std::string_view name) {
    leaf_ = {};
    size_ = 0;
    const Section section = depth_ < kSectionDepth ? SectionOf(name) : Section::kOther;
    if (section == Section::kOther) {
      FindLeaf(name);
    }
    if (depth_ < kSectionDepth) {
      sections_[depth_] = section == Section::kOther ? Current() : section;
    }
    ++depth_;
  }

  void Append(std::string_view data) {
    // The text of a number is collected first and converted when the element ends.
    char* const text = leaf_.text != nullptr ? leaf_.text : number_;
    const int capacity = leaf_.text != nullptr ? leaf_.capacity : static_cast<int>(sizeof(number_));
    if (leaf_.name.empty()) {
      return;
    }
    for (const char character : data) {
      if (size_ < capacity - 1) {
        text[size_++] = character;
      }
    }
    text[size_] = '\0';
  }

  void Close() {
    if (leaf_.number != nullptr) {
      *leaf_.number = static_cast<int>(std::strtol(number_, nullptr, 10));
    }
    leaf_ = {};
    --depth_;
  }

  [[nodiscard]] Section Current() const {
    return depth_ > 0 ? sections_[depth_ - 1] : Section::kOther;
  }

  Section SectionOf(std::string_view name) {
    if (name == "AcRule") {
      if (radio_->rule_count < kRuleCapacity) {
        rule_ = &radio_->rules[radio_->rule_count++];
      }
      return Section::kRule;
    }
    if (name == "Wireless2.4" || name == "Wireless5") {
      radio_ = &out_.radios[name == "Wireless5" ? 1 : 0];
      return Section::kRadio;
    }
    constexpr std::pair<std::string_view, Section> kSections[] = {
        {"specVersion", Section::kVersion},
        {"Device", Section::kDevice},
        {"UpLinkConnection", Section::kUplink},
        {"DSL", Section::kProvider},
        {"SafetyVyr", Section::kSafety}};
    for (const auto& [section_name, section] : kSections) {
      if (name == section_name) {
        return section;
      }
    }
    return Section::kOther;
  }

  template <std::size_t N>
  void Choose(const Leaf (&leaves)[N], std::string_view name) {
    for (const Leaf& leaf : leaves) {
      if (leaf.name == name) {
        leaf_ = leaf;
        number_[0] = '\0';
        return;
      }
    }
  }

  void FindLeaf(std::string_view name) {
    switch (Current()) {
      case Section::kVersion:
        return Choose({IntLeaf("major", out_.major), IntLeaf("minor", out_.minor)}, name);
      case Section::kDevice:
        return Choose(
            {IntLeaf("Configurable", out_.configurable), TextLeaf("DeviceName", out_.device_name),
             TextLeaf("DevicePwd", out_.device_password),
             IntLeaf("RouterEnbl", out_.router_enabled), TextLeaf("EasyRoaming", out_.roaming)},
            name);
      case Section::kUplink:
        return Choose(
            {IntLeaf("Configurable", out_.uplink_configurable),
             TextLeaf("HardwareType", out_.hardware_type),
             TextLeaf("ConnType", out_.connection_type), TextLeaf("LoginUserName", out_.login_name),
             TextLeaf("LoginPassword", out_.login_password)},
            name);
      case Section::kProvider:
        return Choose({TextLeaf("CountryName", out_.country), TextLeaf("IspName", out_.provider)},
                      name);
      case Section::kRadio:
        return FindRadioLeaf(name);
      case Section::kRule:
        return Choose({IntLeaf("Active", rule_->active), TextLeaf("MAC", rule_->mac)}, name);
      case Section::kSafety:
        return Choose(
            {IntLeaf("SafetyVyrEnbl", out_.safety[0]), IntLeaf("UrlDetectEnbl", out_.safety[1]),
             IntLeaf("SafetyNotifyEnbl", out_.safety[2]),
             IntLeaf("ToolRecommendEnbl", out_.safety[3])},
            name);
      case Section::kOther:
        return;
    }
  }

  void FindRadioLeaf(std::string_view name) {
    Choose({IntLeaf("Configurable", radio_->configurable), IntLeaf("WlEnbl", radio_->enabled),
            IntLeaf("WlSchedule", radio_->schedule), TextLeaf("WirelessBSSID", radio_->bssid),
            TextLeaf("WirelessName", radio_->name), TextLeaf("EncryptionMode", radio_->mode),
            TextLeaf("EncryptionKey", radio_->key), TextLeaf("EncryptionType", radio_->type),
            TextLeaf("Channel", radio_->channel), IntLeaf("WlAcEnbl", radio_->access_enabled),
            IntLeaf("WlAcMode", radio_->access_mode)},
           name);
  }

  Settings& out_;
  Radio* radio_ = &out_.radios[0];
  Rule* rule_ = &out_.radios[0].rules[0];
  Section sections_[kSectionDepth] = {};
  int depth_ = 0;
  Leaf leaf_;
  int size_ = 0;
  char number_[32] = "";
};

}  // namespace

bool ReadByExpat(const char* document, std::size_t size, Settings& out) {
  ExpatReader reader(out);
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, &reader);
  XML_SetElementHandler(parser, ExpatReader::Start, ExpatReader::End);
  XML_SetCharacterDataHandler(parser, ExpatReader::Data);
  const bool ok = XML_Parse(parser, document, static_cast<int>(size), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return ok;
}

}  // namespace kio::bench
