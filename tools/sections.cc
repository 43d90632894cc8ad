#include "sections.h"

#include "kioapp/variables.h"
#include "settings/record.h"

namespace kio::tools {
namespace {

using variables::Variable;

std::string RadioGroup(int radio) { return radio == 0 ? "Wl2_" : "Wl5_"; }

}  // namespace

std::vector<std::string> WordsOf(const char* const* words) {
  std::vector<std::string> list;
  for (; (*words)[0] != '\0' || (*words)[1] != '_'; ++words) {
    list.emplace_back(*words);
  }
  return list;
}

std::string NamePrefix(Section section, int radio) {
  switch (section) {
    case Section::kDevice:
      return "rss_";
    case Section::kVersion:
      return "rss_Ver_";
    case Section::kUplink:
      return "rss_Upl_";
    case Section::kDsl:
      return "rss_Upl_Dsl_";
    case Section::kApn:
      return "rss_Upl_Apn_";
    case Section::kSite:
      return "rss_Upl_Ets_";
    case Section::kRadio:
      return "rss_" + RadioGroup(radio);
    case Section::kAccess:
      return "rss_" + RadioGroup(radio) + "Acl_";
    case Section::kRule:
      return "rss_" + RadioGroup(radio) + "Acl_R??_";
    case Section::kService:
      return "rss_Vyr_";
    case Section::kFirmware:
      return "rss_Ext_Fwu_";
    case Section::kSurvey:
      return "rss_Ext_Ssv_";
    case Section::kSurveySite:
      return "rss_Ext_Ssv_S??_";
  }
  return {};
}

std::string NodePrefix(const Place& place) {
  std::string radio = settings::RadioPath(place.radio).c_str();
  switch (place.section) {
    case Section::kUplink:
      return "/uplink";
    case Section::kDsl:
      return "/uplink/dsl";
    case Section::kApn:
      return "/uplink/apn";
    case Section::kSite:
      return "/uplink/extendersite";
    case Section::kRadio:
      return radio;
    case Section::kAccess:
      return radio + "/accesscontrol";
    case Section::kRule:
      return radio + "/accesscontrol/acrule:??";
    case Section::kService:
      return "/safetyvyr";
    default:
      return {};
  }
}

std::string ElementPrefix(const Place& place) {
  std::string radio = std::string("Device/Wireless") + settings::RadioWord(place.radio) + "/";
  switch (place.section) {
    case Section::kVersion:
      return "specVersion/";
    case Section::kDevice:
      return "Device/";
    case Section::kUplink:
      return "Device/UpLinkConnection/";
    case Section::kDsl:
      return "Device/UpLinkConnection/DSL/";
    case Section::kApn:
      return "Device/UpLinkConnection/APN/";
    case Section::kSite:
      return "Device/UpLinkConnection/ExtenderSite/";
    case Section::kRadio:
      return radio;
    case Section::kAccess:
      return radio + "AccessControl/";
    case Section::kRule:
      return radio + "AccessControl/AcRule/";
    case Section::kService:
      return "Device/SafetyVyr/";
    default:
      return {};
  }
}

std::string VariablePath(const Variable& variable, const Place& place, bool is_indexed) {
  char buffer[KIOAPP_VAR_SIZE];
  platform::TextBuffer text(buffer);
  variables::AppendPath(text, variable, place);
  std::string path = text.c_str();
  if (is_indexed) {
    const std::size_t begin = path.find(':') + 1;
    const std::size_t end = path.find('/', begin);
    path.replace(begin, end - begin,
                 "(?"
                 "?+" +
                     path.substr(begin, end - begin) + ")");
  }
  return path;
}

const Variable* VariableOf(Section section, const Field& field) {
  for (const Variable& variable : variables::kVariables) {
    if (variable.section == section && variable.field == &field) {
      return &variable;
    }
  }
  return nullptr;
}

const Variable* VariableOf(Section section, const LiveNode& live) {
  for (const Variable& variable : variables::kVariables) {
    if (variable.section == section && variable.live == &live) {
      return &variable;
    }
  }
  return nullptr;
}

}  // namespace kio::tools
