// The settings record: loaded from the store, changed by hand, verified, applied and dumped.
#include <cerrno>
#include <cstdio>
#include <vector>

#include "buffers.h"
#include "device.h"
#include "kioapp/kioapp.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

struct TextMember {
  char* text;
  std::size_t size;
  Maker make;
};

template <std::size_t N>
TextMember Member(char (&text)[N], Maker make) {
  return {text, N, make};
}

std::string Anything(Random& random) { return Odd(random); }

void AddRadio(std::vector<TextMember>& members, RssWlan& wlan) {
  members.push_back(Member(wlan.wirelessBssid, Mac));
  members.push_back(Member(wlan.wirelessName, Name));
  members.push_back(Member(wlan.wirelessNameValidate, Rule));
  members.push_back(Member(wlan.encryptionMode, EncryptionMode));
  members.push_back(Member(wlan.encryptionType, EncryptionType));
  members.push_back(Member(wlan.encryptionKey, WirelessKey));
  members.push_back(Member(wlan.encryptionKeyValidate, Rule));
  members.push_back(Member(wlan.channelList, ChannelList));
  members.push_back(Member(wlan.channel, Channel));
  members.push_back(Member(wlan.path, Directory));
  members.push_back(Member(wlan.accessControlPath, Directory));
  for (RssAcRule& rule : wlan.acRule) {
    members.push_back(Member(rule.mac, Mac));
  }
}

std::vector<TextMember> MakeTextMembers() {
  RssUpLink& uplink = rssXmlData.upLink;
  std::vector<TextMember> members = {
      Member(rssXmlData.deviceName, Name),
      Member(rssXmlData.devicePwd, Password),
      Member(rssXmlData.easyRoaming, Roaming),
      Member(rssXmlData.friendlyNameValidate, Rule),
      Member(rssXmlData.passwordValidate, Rule),
      Member(rssXmlData.loginUserNameValidate, Rule),
      Member(rssXmlData.loginPasswordValidate, Rule),
      Member(rssXmlData.tmpPath, Directory),
      Member(rssXmlData.devicePath, Name),
      Member(rssXmlData.setMsg, Anything),
      Member(uplink.hardwareType, Hardware),
      Member(uplink.hardwareSupport, HardwareList),
      Member(uplink.connType, Connection),
      Member(uplink.loginUserName, Name),
      Member(uplink.loginPassword, Password),
      Member(uplink.ip, Address),
      Member(uplink.netMask, Netmask),
      Member(uplink.gateway, Address),
      Member(uplink.dns, Address),
      Member(uplink.path, Directory),
      Member(uplink.dsl.countryName, Country),
      Member(uplink.dsl.ispName, Name),
      Member(uplink.dsl.encapsulationMode, Encapsulation),
      Member(uplink.dsl.path, Directory),
      Member(uplink.apn.countryName, Country),
      Member(uplink.apn.ispName, Name),
      Member(uplink.extenderSite.connRefSiteBssid, Mac),
      Member(uplink.extenderSite.wirelessType, RadioWord),
      Member(uplink.extenderSite.wirelessName, Name),
      Member(uplink.extenderSite.encryptionKey, WirelessKey),
      Member(rssXmlData.safetyVyr.path, Directory),
  };
  AddRadio(members, rssXmlData.wlan[0]);
  AddRadio(members, rssXmlData.wlan[1]);
  return members;
}

void AddRadioNumbers(std::vector<int*>& numbers, RssWlan& wlan) {
  for (int* const number :
       {&wlan.configurable, &wlan.wlEnbl, &wlan.wlSchedule, &wlan.wlAcEnbl, &wlan.wlAcMode,
        &wlan.wlAcRuleNo, &wlan.restart, &wlan.encryptionModeCode, &wlan.encryptionTypeCode,
        &wlan.acRule[0].active, &wlan.acRule[39].active}) {
    numbers.push_back(number);
  }
}

std::vector<int*> MakeNumbers() {
  RssUpLink& uplink = rssXmlData.upLink;
  RssSafetyVyr& safety = rssXmlData.safetyVyr;
  std::vector<int*> numbers = {&rssXmlData.specVer,
                               &rssXmlData.configurable,
                               &rssXmlData.routerEnbl,
                               &rssXmlData.extenderEnbl,
                               &rssXmlData.roamingRestart,
                               &rssXmlData.wlanSurveyRestart,
                               &rssXmlData.exeflag,
                               &rssXmlData.pre_exeflag,
                               &uplink.configurable,
                               &uplink.mtu,
                               &uplink.restart,
                               &uplink.connTypeCode,
                               &uplink.hardwareTypeCode,
                               &uplink.dsl.vpi,
                               &uplink.dsl.vci,
                               &uplink.dsl.encapModeCode,
                               &uplink.extenderSite.survey,
                               &uplink.extenderSite.wirelessTypeCode,
                               &safety.safetyVyrEnbl,
                               &safety.urlDetectEnbl,
                               &safety.safetyNotifyEnbl,
                               &safety.toolRecommendEnbl,
                               &safety.restart};
  AddRadioNumbers(numbers, rssXmlData.wlan[0]);
  AddRadioNumbers(numbers, rssXmlData.wlan[1]);
  return numbers;
}

int NumberFor(Random& random, const int* number) {
  if (number == &rssXmlData.specVer) {
    return random.OneIn(2) ? 100 : 101;
  }
  if (number == &rssXmlData.exeflag || number == &rssXmlData.pre_exeflag) {
    return random.OneIn(2) ? random.Below(1024) : 0;
  }
  if (number == &rssXmlData.upLink.dsl.vci || number == &rssXmlData.upLink.mtu) {
    constexpr int kEnds[] = {0, 1, 31, 32, 1491, 1492, 1493, 32767, 32768, -1};
    return random.Of(kEnds);
  }
  return random.OneIn(12) ? random.Between(-2, 45) : random.Between(-1, 5);
}

unsigned char* const kBytes[] = {
    &rssXmlData.deviceRestart,    &rssXmlData.saveflag,         &rssXmlData.apCloningOnly,
    &rssXmlData.apCloningFeature, &rssXmlData.fwUpgradeFeature, &rssXmlData.easyRoamingFeature,
    &rssXmlData.safetyVyrFeature, &rssXmlData.wlan24Feature,    &rssXmlData.wlan5Feature,
};

void ChangeRecord(Random& random, int changes) {
  static const std::vector<TextMember> members = MakeTextMembers();
  static const std::vector<int*> numbers = MakeNumbers();
  for (; changes > 0; --changes) {
    if (random.OneIn(8)) {
      *random.Of(kBytes) = static_cast<unsigned char>(random.Below(3));
    } else if (random.OneIn(2)) {
      const TextMember& member = random.Of(members);
      const std::string text = random.OneIn(4) ? Odd(random) : member.make(random);
      std::snprintf(member.text, member.size, "%s", text.c_str());
    } else {
      int* const number = random.Of(numbers);
      *number = NumberFor(random, number);
    }
  }
  AcceptChanges();
}

void TakeStep(Random& random) {
  errno = 0;
  switch (random.Below(10)) {
    case 0:
    case 1:
    case 2: {
      const int result = Verify_RssXml();
      const int left_in_errno = errno;
      Answer("Verify_RssXml", {result, left_in_errno});
      break;
    }
    case 3:
    case 4:
    case 5:
      Answer("Apply_RssXmlToDevice", {Apply_RssXmlToDevice()});
      break;
    case 6:
      calc_RssExeFlag();
      Answer("calc_RssExeFlag", {});
      break;
    case 7:
      dump_RssXmlData();
      Answer("dump_RssXmlData", {});
      break;
    case 8:
      restore_XmlRssStatus(random.Below(3));
      Answer("restore_XmlRssStatus", {});
      break;
    default:
      Commit(random);
      break;
  }
}

void RunRecord(Random& random) {
  restore_XmlRssStatus(1);
  Answer("restore_XmlRssStatus", {});
  for (int steps = random.Between(1, 5); steps > 0; --steps) {
    ChangeRecord(random, random.Below(8));
    TakeStep(random);
  }
}

void RunSnapshot(Random& random) {
  for (int i = random.Between(1, 3); i > 0; --i) {
    restore_XmlRssStatus(random.Between(-1, 1));
    Answer("restore_XmlRssStatus", {});
    if (random.OneIn(2)) {
      dump_RssXmlData();
      Answer("dump_RssXmlData", {});
    }
    ChangeDevice(random);
  }
}

void RunResults(Random& random) {
  if (random.OneIn(2)) {
    const std::string directory = Directory(random);
    std::snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "%s", directory.c_str());
    AcceptChanges();
  }
  const Buffer path(Odd(random));
  const Buffer key(Odd(random));
  constexpr int kCodes[] = {0, 1, 2, 3, 10, 11, 20, 21, -1, 2147483647};
  switch (random.Below(5)) {
    case 0:
      Answer("write_RssXml_ResultXml",
             {write_RssXml_ResultXml(random.Of(kCodes), path.get(), random.Between(-1, 100))});
      break;
    case 1:
      Answer("write_RssXml_ResultXml",
             {write_RssXml_ResultXml(random.Of(kCodes), rssXmlData.setMsg, random.Below(50))});
      break;
    case 2:
      write_RssXml_KeyResult(random.OneIn(5) ? nullptr : path.get(), key.get(), random.Of(kCodes));
      Answer("write_RssXml_KeyResult", {});
      break;
    case 3:
      write_RssXml_VerifyError(random.OneIn(5) ? nullptr : path.get(), key.get());
      Answer("write_RssXml_VerifyError", {});
      break;
    default:
      write_RssXml_LostKeyError(random.OneIn(5) ? "" : path.get(), key.get());
      Answer("write_RssXml_LostKeyError", {});
      break;
  }
}

void RunTemporaryDocument(Random& random) {
  constexpr const char* kFiles[] = {"size.xml", "rsscheckfw.xml", "a b.xml"};
  constexpr const char* kTags[] = {"width", "fwsize", "x"};
  if (random.OneIn(4)) {
    rssXmlData.tmpPath[0] = '\0';
    AcceptChanges();
  }
  for (int i = random.Between(1, 5); i > 0; --i) {
    const Buffer value(random.OneIn(3) ? Name(random) : Odd(random));
    const Buffer tag(random.OneIn(6) ? Odd(random, 60) : random.Of(kTags));
    const Buffer file(random.OneIn(6) ? Odd(random, 150) : random.Of(kFiles));
    if (random.OneIn(4)) {
      Answer("write_ResultXmlFile", {write_ResultXmlFile(file.get(), tag.get(), value.get())});
    } else {
      const int closing = random.OneIn(4) ? random.Between(-1, 3) : 0;
      Answer("write_TmpXmlFile", {write_TmpXmlFile(file.get(), tag.get(), value.get(), closing)});
    }
  }
}

void RunChannels(Random& random) {
  for (int i = random.Between(1, 5); i > 0; --i) {
    for (const char* const radio : {"/lan/wireless2.4:1", "/lan/wireless5:1"}) {
      if (random.Chance(60)) {
        Store::Set(std::string(radio) + "/channel", random.Chance(70) ? "0" : Number(random));
        Store::Set(std::string(radio) + "/channelusing", Channel(random));
      }
    }
    Answer("checkWlanChannelUsing", {checkWlanChannelUsing()});
  }
}

constexpr Kind kKinds[] = {
    {"record", 14, RunRecord},           {"snapshot", 4, RunSnapshot},
    {"result document", 3, RunResults},  {"temporary document", 2, RunTemporaryDocument},
    {"channels in use", 2, RunChannels},
};

}  // namespace

const std::span<const Kind> kRecordKinds = kKinds;

}  // namespace kio::differential
