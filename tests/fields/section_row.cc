#include "fields/section_row.h"

#include <ostream>

namespace kio::test {
namespace {

using settings::SectionId;

// Its nodes are whole paths.
SectionRow DeviceSection() {
  return {
      .name = "Device",
      .section = SectionId::kDevice,
      .element = "Device",
      .scenes = {Scene::kDhcp, Scene::kDhcp10},
      .missing = "Device",
      .parser = "do_RssDevice_Parser",
      .variables = "rss_",
      .paths = "/Device/",
      .nodes = "/",
  };
}

SectionRow SpecVersionSection() {
  return {
      .name = "specVersion",
      .section = SectionId::kVersion,
      .element = "specVersion",
      .scenes = {Scene::kDhcp, Scene::kDhcp10},
      .missing = "specVersion",
      .variables = "rss_Ver_",
      .paths = "/specVersion/",
      .nodes = "/zentrolinks/specversion/",
  };
}

SectionRow UpLinkConnectionSection() {
  return {
      .name = "UpLinkConnection",
      .section = SectionId::kUplink,
      .element = "Device/UpLinkConnection",
      .scenes = {Scene::kDhcp, Scene::kDhcp10},
      .missing = "UpLinkConnection",
      .parser = "do_RssUpLink_Parser",
      .variables = "rss_Upl_",
      .paths = "/Device/UpLinkConnection/",
      .nodes = "/uplink/",
  };
}

SectionRow DSLSection() {
  return {
      .name = "DSL",
      .section = SectionId::kDsl,
      .element = "Device/UpLinkConnection/DSL",
      .scenes = {Scene::kAdsl, Scene::kDsl10},
      .missing = "DSL",
      .parser = "do_RssISP_Parser",
      .variables = "rss_Upl_Dsl_",
      .paths = "/Device/UpLinkConnection/DSL/",
      .nodes = "/uplink/dsl/",
  };
}

SectionRow APNSection() {
  return {
      .name = "APN",
      .section = SectionId::kApn,
      .element = "Device/UpLinkConnection/APN",
      .scenes = {Scene::kApn},
      .missing = "APN",
      .parser = "do_RssISP_Parser",
      .variables = "rss_Upl_Apn_",
      .paths = "/Device/UpLinkConnection/APN/",
      .nodes = "/uplink/apn/",
  };
}

SectionRow ExtenderSiteSection() {
  return {
      .name = "ExtenderSite",
      .section = SectionId::kSite,
      .element = "Device/UpLinkConnection/ExtenderSite",
      .scenes = {Scene::kSite, Scene::kSite10},
      .missing = "ExtenderSite",
      .parser = "do_RssExtender_Parser",
      .variables = "rss_Upl_Ets_",
      .paths = "/Device/UpLinkConnection/ExtenderSite/",
      .nodes = "/uplink/extendersite/",
  };
}

SectionRow Wireless24Section() {
  return {
      .name = "Wireless24",
      .section = SectionId::kRadio,
      .element = "Device/Wireless2.4",
      .scenes = {Scene::kDhcp, Scene::kDhcp10},
      .missing = "Wireless2.4",
      .parser = "do_RssWireless_Parser",
      .variables = "rss_Wl2_",
      .paths = "/Device/Wireless2.4/",
      .nodes = "/lan/wireless2.4:1/",
  };
}

SectionRow Wireless24AccessControlSection() {
  return {
      .name = "Wireless24_AccessControl",
      .section = SectionId::kAccess,
      .element = "Device/Wireless2.4/AccessControl",
      .scenes = {Scene::kDhcp},
      .missing = "AccessControl",
      .parser = "do_RssAccessCtl_Parser",
      .variables = "rss_Wl2_Acl_",
      .paths = "/Device/Wireless2.4/AccessControl/",
      .nodes = "/lan/wireless2.4:1/accesscontrol/",
  };
}

SectionRow Wireless24AcRuleSection() {
  return {
      .name = "Wireless24_AcRule",
      .section = SectionId::kRule,
      .element = "Device/Wireless2.4/AccessControl/AcRule",
      .scenes = {Scene::kDhcp},
      .parser = "do_RssAcRule_Parser",
      .variables = "rss_Wl2_Acl_R00_",
      .paths = "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:00/",
      .nodes = "/lan/wireless2.4:1/accesscontrol/acrule:1/",
  };
}

SectionRow Wireless5Section() {
  return {
      .name = "Wireless5",
      .section = SectionId::kRadio,
      .radio = 1,
      .element = "Device/Wireless5",
      .scenes = {Scene::kDhcp, Scene::kDhcp10},
      .missing = "Wireless5",
      .parser = "do_RssWireless_Parser",
      .variables = "rss_Wl5_",
      .paths = "/Device/Wireless5/",
      .nodes = "/lan/wireless5:1/",
  };
}

SectionRow Wireless5AccessControlSection() {
  return {
      .name = "Wireless5_AccessControl",
      .section = SectionId::kAccess,
      .radio = 1,
      .element = "Device/Wireless5/AccessControl",
      .scenes = {Scene::kDhcp},
      .missing = "AccessControl",
      .parser = "do_RssAccessCtl_Parser",
      .variables = "rss_Wl5_Acl_",
      .paths = "/Device/Wireless5/AccessControl/",
      .nodes = "/lan/wireless5:1/accesscontrol/",
  };
}

SectionRow Wireless5AcRuleSection() {
  return {
      .name = "Wireless5_AcRule",
      .section = SectionId::kRule,
      .radio = 1,
      .element = "Device/Wireless5/AccessControl/AcRule",
      .scenes = {Scene::kDhcp},
      .parser = "do_RssAcRule_Parser",
      .variables = "rss_Wl5_Acl_R00_",
      .paths = "/Device/Wireless5/AccessControl/WlAcLists/AcRule:00/",
      .nodes = "/lan/wireless5:1/accesscontrol/acrule:1/",
  };
}

SectionRow SafetyVyrSection() {
  return {
      .name = "SafetyVyr",
      .section = SectionId::kSafety,
      .element = "Device/SafetyVyr",
      .scenes = {Scene::kDhcp, Scene::kDhcp10},
      .missing = "SafetyVyr",
      .parser = "do_RssSafetyVyr_Parser",
      .variables = "rss_Vyr_",
      .paths = "/Device/SafetyVyr/",
      .nodes = "/safetyvyr/",
  };
}

SectionRow FwUpgradeInfoSection() {
  return {
      .name = "FwUpgradeInfo",
      .section = SectionId::kFirmware,
      .variables = "rss_Ext_Fwu_",
      .paths = "/FwUpgradeInfo/",
  };
}

SectionRow WirelessSiteSurveySection() {
  return {
      .name = "WirelessSiteSurvey",
      .section = SectionId::kSurvey,
      .variables = "rss_Ext_Ssv_",
      .paths = "/WirelessSiteSurvey/",
  };
}

SectionRow WirelessSiteSurveySiteSection() {
  return {
      .name = "WirelessSiteSurvey_Site",
      .section = SectionId::kSurveySite,
      .variables = "rss_Ext_Ssv_S00_",
      .paths = "/WirelessSiteSurvey/Site:00/",
  };
}

}  // namespace

void PrintTo(const SectionRow& row, std::ostream* out) { *out << row.name; }

std::vector<SectionRow> AllSections() {
  return {
      DeviceSection(),
      SpecVersionSection(),
      UpLinkConnectionSection(),
      DSLSection(),
      APNSection(),
      ExtenderSiteSection(),
      Wireless24Section(),
      Wireless24AccessControlSection(),
      Wireless24AcRuleSection(),
      Wireless5Section(),
      Wireless5AccessControlSection(),
      Wireless5AcRuleSection(),
      SafetyVyrSection(),
      FwUpgradeInfoSection(),
      WirelessSiteSurveySection(),
      WirelessSiteSurveySiteSection(),
  };
}

}  // namespace kio::test
