// What is told of a node that the library could not use.
#include "node_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "profile.h"

namespace kiohost {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::map<std::string, std::string>& OtherNodes() {
  static const std::map<std::string, std::string> nodes = {
      {"/sys/friendlyname_validate", "0,8,1"},
      {"/sys/user:1/password_validate", "0,32,5&#44;0"},
      {"/lan/wireless2.4:1/wirelessname_validate", "0,8,1"},
      {"/lan/wireless5:1/wirelessname_validate", "0,4,1"},
      {"/lan/wireless2.4:1/encryptionkey_validate", "0,10,0"},
      {"/lan/wireless2.4:1/encryptionmode", "WPA2"},
      {"/lan/wireless5:1/encryptionmode", "wep"},
      {"/uplink/hardwaresupport", "Ethernet,WWan802.11"},
      {"/lan/wireless2.4:1/channellist", "0, 1,6,11"},
      {"/uplink/extendersite/wirelesstype", "5"}};
  return nodes;
}

std::string FaultOf(const std::string& path, const std::string& text) {
  return NodeFault({path, text}, [](std::string_view other) -> std::optional<std::string> {
    const auto found = OtherNodes().find(std::string(other));
    return found == OtherNodes().end() ? std::nullopt : std::optional(found->second);
  });
}

TEST(NodeCheckTest, WhatTheLibraryUsesIsNoFault) {
  const std::vector<Node> nodes = {{"/SYS/RouterEnbl", "3"},
                                   {"/sys/friendlyname", "8 bytes!"},
                                   {"/sys/friendlyname", ""},
                                   {"/sys/user:1/password", "abc"},
                                   {"/sys/user:1/password_validate", ""},
                                   {"/zentrolinks/configurable", "0"},
                                   {"/zentrolinks/specversion/minor", "0"},
                                   {"/zentrolinks/apcloning", "2"},
                                   {"/uplink/conntype", "pppoe"},
                                   {"/uplink/conntype", ""},
                                   {"/uplink/hardwaretype", "WWan802.11"},
                                   {"/uplink/ip", ""},
                                   {"/uplink/netmask", "0.0.0.0"},
                                   {"/uplink/loginusername_validate", "1,14.5, 1"},
                                   {"/uplink/loginpassword_validate", "0"},
                                   {"/uplink/extendersite/wirelessname", "four"},
                                   {"/uplink/extendersite/encryptionkey", ""},
                                   {"/lan/wireless2.4:1/channel", "6"},
                                   {"/lan/wireless2.4:1/encryptionkey", "12345678"},
                                   {"/lan/wireless5:1/encryptionkey", "12345"},
                                   {"/lan/wireless5:1/encryptiontype", "shared"},
                                   {"/lan/wireless2.4:1/encryptiontype", "AES"},
                                   {"/lan/wireless5:1/accesscontrol/acrule:40/active", "1"},
                                   {"/lan/wireless5:1/configurable/acrule:3", "anything"},
                                   {"/wirelesssitesurvey/site:12", "anything"},
                                   {"/runtime/easyroaming/connstainfo/sta:1/rssi", "-40"},
                                   {"/fwupgradeinfo/newfw", ""}};
  for (const Node& node : nodes) {
    EXPECT_THAT(FaultOf(node.path, node.text), IsEmpty());
  }
}

struct Fault {
  const char* path;
  const char* text;
  const char* reason;
};

TEST(NodeCheckTest, WhatTheLibraryDoesNotKnowOrUseIsTold) {
  const std::string longer(128, 'x');
  const std::vector<Fault> faults = {
      {"/sys/frendlyname", "x", "the library knows no node /sys/frendlyname"},
      {"/sys/friendlyname/x", "x", "knows no node"},
      {"/sys", "x", "knows no node"},
      {"/sys/user:2/password", "x", "knows no node"},
      {"/lan/wireless6:1/channel", "1", "knows no node"},
      {"/lan/wireless2.4:2/channel", "1", "knows no node"},
      {"/lan/wireless5:1/accesscontrol/acrule:1/name", "1", "knows no node"},
      {"/sys/routerenbl", "on", "\"on\" is no number of 0 or more"},
      {"/sys/routerenbl", "", "is no number"},
      {"/sys/routerenbl", "-1", "is no number of 0 or more"},
      {"/sys/factorydefault", "no", "is no number"},
      {"/lan/wireless5:1/wlenbl", "4", "is no number from 0 to 3"},
      {"/uplink/dsl/vci", "31", "is no number from 32 to 32767"},
      {"/zentrolinks/configurable", "no", "is neither 0 nor 1, and counts as 1"},
      {"/uplink/configurable", "yes", "is neither 0 nor 1, and counts as 0"},
      {"/uplink/conntype", "PPP", "is none of DHCP, Static, PPPoE, PPPoA"},
      {"/uplink/conntype", " DHCP", "is none of DHCP"},
      {"/uplink/hardwaretype", "VDSL", "is not in /uplink/hardwaresupport"},
      {"/uplink/hardwaretype", "Fibre", "is none of Ethernet, ADSL"},
      {"/lan/wireless2.4:1/encryptiontype", "OPEN", "does not go with the mode WPA2"},
      {"/lan/wireless2.4:1/encryptiontype", "", "does not go with the mode WPA2"},
      {"/lan/wireless5:1/encryptiontype", "AES", "does not go with the mode wep"},
      {"/uplink/ip", "127.0.0.1", "is no IPv4 address of a host"},
      {"/uplink/netmask", "255.0.255.0", "is no IPv4 netmask"},
      {"/uplink/dns", "192.168.100.2000", "is cut to 15 characters"},
      {"/sys/modelnumber", longer.c_str(), "is cut to 127 characters"},
      {"/sys/friendlyname", "nine byte", "breaks the rule of /sys/friendlyname_validate, 0,8,1"},
      {"/sys/user:1/password_validate", "text", "its field 1 is no number"},
      {"/sys/user:1/password_validate", "0,32,", "its field 3 is no number"},
      {"/sys/user:1/password_validate", "0,4,5", "its maximum is below its minimum"},
      {"/lan/wireless2.4:1/channel", "36", "is not in /lan/wireless2.4:1/channellist"},
      {"/lan/wireless2.4:1/encryptionkey", "short", "\"********\" is no key for the mode WPA2"},
      {"/lan/wireless2.4:1/encryptionkey", "", "is no key for the mode WPA2"},
      {"/lan/wireless2.4:1/encryptionkey", "a-longer-key", "breaks the rule of"},
      {"/lan/wireless5:1/encryptionkey", "12345678", "is no key for the mode wep"},
      {"/uplink/extendersite/wirelessname", "five5", "breaks the rule of /lan/wireless5:1/"},
      {"/uplink/extendersite/encryptionkey", "six666", "is no key of any mode"},
      {"/lan/wireless5:1/accesscontrol/acrule:1", "x", "is not read"}};
  for (const Fault& fault : faults) {
    EXPECT_THAT(FaultOf(fault.path, fault.text), HasSubstr(fault.reason)) << fault.path;
  }
}

TEST(NodeCheckTest, WhatTheOtherNodesDoNotTellIsNoFault) {
  const auto none = [](std::string_view /*path*/) { return std::nullopt; };
  EXPECT_THAT(NodeFault({"/lan/wireless5:1/encryptiontype", "SHARED"}, none), IsEmpty());
  EXPECT_THAT(NodeFault({"/lan/wireless5:1/encryptiontype", "FOO"}, none),
              HasSubstr("is no type of any mode"));
  // In version 1.0 the hardware type is not compared with the list.
  const auto version10 = [](std::string_view path) -> std::optional<std::string> {
    return path.ends_with("/minor") ? std::optional<std::string>("0") : std::nullopt;
  };
  EXPECT_THAT(NodeFault({"/uplink/hardwaretype", "DSL"}, version10), IsEmpty());
}

std::vector<ProfileNode> Delivered(const std::string& name) {
  std::vector<ProfileNode> nodes;
  const Status status =
      ReadProfile(std::string(KIO_HOST_DIR "/profiles/") + name + ".profile", &nodes);
  EXPECT_TRUE(status.ok()) << status.reason();
  return nodes;
}

TEST(NodeCheckTest, TheDeliveredProfilesHaveNoFault) {
  int profiles = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KIO_HOST_DIR "/profiles")) {
    ++profiles;
    const std::vector<ProfileNode> nodes = Delivered(entry.path().stem());
    for (const ProfileNode& node : nodes) {
      const std::string fault = NodeFault(node.node, [&nodes](std::string_view path) {
        const ProfileNode* const found = FindNode(nodes, path);
        return found == nullptr ? std::nullopt : std::optional(found->node.text);
      });
      EXPECT_THAT(fault, IsEmpty()) << node.place;
    }
  }
  EXPECT_GE(profiles, 9);
}

// Texts that have a form of their own, which is shorter.
bool HasAForm(const std::string& path) {
  static const std::set<std::string> names = {
      "devicemac", "fwupgradefn", "urlgetcmd",     "isengfwserver",  "lanip",
      "channel",   "rsshttpport", "encryptionkey", "scriptdirecory", "tempdirecory"};
  return path.starts_with("/runtime/") || path.starts_with("/wirelesssitesurvey/") ||
         path.starts_with("/fwupgradeinfo/newfw/") ||
         names.contains(path.substr(path.rfind('/') + 1));
}

// The profile has a text of the greatest length for each node that takes any text.
TEST(NodeCheckTest, TheLongestTextsAreAsLongAsTheLibraryTakesThem) {
  const std::vector<ProfileNode> nodes = Delivered("longest-texts");
  std::map<std::string, size_t> longest;
  for (const ProfileNode& node : nodes) {
    longest[node.node.path] = node.node.text.size();
  }
  std::ifstream table(KIO_HOST_DIR "/known_nodes.inc");
  int checked = 0;
  for (std::string line; std::getline(table, line);) {
    const size_t before_limit = line.find(", 0, ");
    if (before_limit == std::string::npos || line.find("Word") != std::string::npos ||
        line.find("kTypeOfMode") != std::string::npos ||
        line.find("kNumber") != std::string::npos) {
      continue;
    }
    std::string path = line.substr(2, line.find('"', 2) - 2);
    const size_t limit = std::stoul(line.substr(before_limit + std::string(", 0, ").size()));
    constexpr size_t kShortest = 15;  // less is that of a switch or of no text at all
    if (limit < kShortest || HasAForm(path)) {
      continue;
    }
    for (const auto& [mark, word] : {std::pair("{band}", "2.4"), std::pair("{n}", "1")}) {
      if (const size_t at = path.find(mark); at != std::string::npos) {
        path.replace(at, std::string(mark).size(),
                     path.find("acrule") != std::string::npos && word[0] == '2' ? "5" : word);
      }
    }
    EXPECT_EQ(longest[path], limit) << path;
    ++checked;
  }
  EXPECT_GT(checked, 30);
}

}  // namespace
}  // namespace kiohost
