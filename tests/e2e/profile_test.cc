// The delivered profiles, each with a document that its device takes and one that it refuses; and
// what is told of a profile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

struct ProfileRow {
  std::string profile;
  std::string accepted;
  std::string node;  // that the accepted document changes
  std::string text;
  std::string refused;
  int code = 3;  // and the result document of the refusal
  std::string message;
};

std::string Version10Document() { return ReadFile(KIO_E2E_DIR "/../../examples/settings-1.0.xml"); }

std::string DeviceNamed(const std::string& name) {
  return With(FactoryDocument(), "DeviceName", name);
}

std::string SingleBandDocument(const std::string& channel) {
  const std::string document =
      Without(Without(Without(DeviceNamed("Attic"), "Wireless5"), "SafetyVyr"), "EasyRoaming");
  return WithIn(document, "Wireless2.4", "Channel", channel);
}

std::string UplinkDocument(const std::string& uplink) {
  return With(FactoryDocument(), "UpLinkConnection", uplink);
}

std::string DslDocument(const std::string& hardware) {
  return UplinkDocument(
      "<HardwareType>" + hardware +
      "</HardwareType><ConnType>PPPoE</ConnType>"
      "<LoginUserName>line-43</LoginUserName><LoginPassword>secret</LoginPassword>"
      "<DSL><CountryName>Norway</CountryName><IspName>Fjord</IspName></DSL>");
}

std::string MobileDocument(const std::string& provider) {
  return UplinkDocument(
      "<HardwareType>WWanAPN</HardwareType><ConnType>DHCP</ConnType>"
      "<APN><CountryName>Norway</CountryName><IspName>" +
      provider + "</IspName></APN>");
}

std::string ExtenderDocument(const std::string& key) {
  const std::string document = UplinkDocument(
      "<HardwareType>WWan802.11</HardwareType><ConnType>DHCP</ConnType><ExtenderSite>"
      "<Survey>0</Survey><ConnRefSiteBSSID>02:00:5E:88:50:01</ConnRefSiteBSSID>"
      "<WirelessType>5</WirelessType><WirelessName>Neighbour</WirelessName><EncryptionKey>" +
      key + "</EncryptionKey></ExtenderSite>");
  return With(document, "RouterEnbl", "2");
}

std::string LockedDocument(const std::string& radio) {
  std::string document = With(DeviceNamed("Attic"), "RouterEnbl", "3");
  for (const char* const band : {"Wireless2.4", "Wireless5"}) {
    document = WithIn(document, band, "WlEnbl", "3");
    document = WithIn(document, band, "WlSchedule", "2");
    document = WithIn(document, band, "WlAcEnbl", "2");
  }
  return WithIn(document, "Wireless2.4", "WlEnbl", radio);
}

std::string LongDocument(const std::string& channel) {
  const std::string document =
      With(DeviceNamed(std::string(127, 'n')), "DevicePwd", std::string(127, 'p'));
  return WithIn(document, "Wireless2.4", "Channel", channel);
}

std::vector<ProfileRow> Rows() {
  return {
      {"dual-band-router", DeviceNamed("Attic"), "/sys/friendlyname", "Attic",
       WithIn(FactoryDocument(), "Wireless5", "Channel", "6"), 3, "Device/Wireless5/Channel"},
      {"single-band-router", SingleBandDocument("6"), "/lan/wireless2.4:1/channel", "6",
       SingleBandDocument("36"), 3, "Device/Wireless2.4/Channel"},
      {"dsl-router", DslDocument("ADSL"), "/uplink/hardwaretype", "ADSL", FactoryDocument(), 3,
       "Device/Uplink/HardwareType"},
      {"mobile-router", MobileDocument("Fjord Mobile"), "/uplink/apn/ispname", "Fjord Mobile",
       MobileDocument(""), 3, "Device/Uplink/APN/IspName"},
      {"wireless-extender", ExtenderDocument("neighbour-key"), "/uplink/extendersite/wirelesstype",
       "5", ExtenderDocument("six666"), 3, "Device/Uplink/ExtenderSite/EncryptionKey"},
      {"version-1.0", Version10Document(), "/lan/wireless2.4:1/wirelessname", "Sofa & garden",
       FactoryDocument(), 1, ""},
      // What it takes changes nothing.
      {"read-only", DeviceNamed("Attic"), "/sys/friendlyname", "Home router", Version10Document(),
       1, ""},
      {"locked-switches", LockedDocument("3"), "/sys/friendlyname", "Attic", LockedDocument("1"), 3,
       "Device/Wireless2.4/WlEnbl"},
      // A full list of channels loses its last comma, and so its last channel.
      {"longest-texts", LongDocument("122"), "/sys/friendlyname", std::string(127, 'n'),
       LongDocument("123"), 3, "Device/Wireless2.4/Channel"},
  };
}

TEST(ProfileTest, EachDeliveredOneTakesADocumentAndRefusesAnother) {
  std::set<std::string> left;
  for (const auto& entry : std::filesystem::directory_iterator(KIO_HOST_DIR "/profiles")) {
    left.insert(entry.path().stem());
  }
  HostProcess host;
  for (const ProfileRow& row : Rows()) {
    SCOPED_TRACE(row.profile);
    ASSERT_TRUE(host.Start({"--factory-reset", "--strict", "--profile", row.profile}))
        << host.Errors();
    const std::string factory = host.Dump();
    EXPECT_EQ(Post(host.port(), "/settings", row.refused).body,
              ResultDocument(row.code, row.message, 0));
    EXPECT_EQ(host.Dump(), factory);
    EXPECT_THAT(Post(host.port(), "/settings", row.accepted).body,
                HasSubstr("<RssSetResult>0</RssSetResult>"));
    EXPECT_EQ(host.Node(row.node), row.text);
    EXPECT_EQ(host.Dump() == factory, row.profile == "read-only");
    EXPECT_EQ(host.End(SIGTERM), 0);
    left.erase(row.profile);
  }
  EXPECT_THAT(left, testing::IsEmpty());
}

TEST(ProfileTest, TheListHasALineForEachDeliveredOne) {
  const CommandResult list = RunKiohost({"--profiles"});
  EXPECT_EQ(list.exit_code, 0);
  for (const ProfileRow& row : Rows()) {
    EXPECT_THAT("\n" + list.output, HasSubstr("\n" + row.profile + " "));
  }
  EXPECT_EQ(Count(list.output, "\n"), Rows().size());
  EXPECT_THAT(list.output, HasSubstr("\nmobile-router       A router with two radios on a mobile"));
  EXPECT_EQ(Count(list.output, "(default)\n"), 1);
}

TEST(ProfileTest, AnUnknownOneIsNamedAndTheStoreStaysAsItWas) {
  const TempDir dir;
  const std::vector<std::string> reset = {"--store", dir.File("s.db"), "--factory-reset", "--dump"};
  const std::string before = RunKiohost(reset).output;
  std::vector<std::string> other = reset;
  other.insert(other.end(), {"--profile", "triple-band"});
  const CommandResult result = RunKiohost(other);
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_THAT(result.errors, HasSubstr("cannot read the profile triple-band: there is neither"));
  EXPECT_EQ(RunKiohost({"--store", dir.File("s.db"), "--dump"}).output, before);
}

TEST(ProfileTest, WhatTheLibraryCouldNotUseIsWarnedOfOrRefused) {
  const TempDir dir;
  const std::string file = dir.File("own.profile");
  WriteFile(file,
            "include " +
                std::filesystem::relative(KIO_HOST_DIR "/profiles/dsl-router.profile", dir.path())
                    .string() +
                "\n\n/sys/frendlyname = x\n/uplink/conntype = PPP\n");
  const std::vector<std::string> faults = {
      file + ": line 3: the library knows no node /sys/frendlyname\n",
      file + ": line 4: /uplink/conntype: \"PPP\" is none of DHCP, Static, PPPoE, PPPoA\n",
      "--set: /lan/wireless5:1/channel: \"13\" is not in /lan/wireless5:1/channellist\n"};
  const std::vector<std::string> arguments = {
      "--store", dir.File("s.db"), "--profile", file, "--set", "/lan/wireless5:1/channel=13",
      "--dump",  "--factory-reset"};
  const CommandResult warned = RunKiohost(arguments);
  EXPECT_EQ(warned.exit_code, 0);
  EXPECT_EQ(Count(warned.errors, "kiohost: warning: "), faults.size());
  EXPECT_THAT(warned.output, HasSubstr("/uplink/conntype = PPP\n"));
  EXPECT_THAT(warned.output, HasSubstr("/uplink/dsl/ispname = Fjord DSL\n"));
  EXPECT_THAT(warned.output, HasSubstr("/lan/wireless5:1/channel = 13\n"));

  EXPECT_EQ(RunKiohost({"--store", dir.File("s.db"), "--factory-reset", "--dump"}).exit_code, 0);
  std::vector<std::string> strict = arguments;
  strict.emplace_back("--strict");
  const CommandResult refused = RunKiohost(strict);
  EXPECT_EQ(refused.exit_code, 4);
  EXPECT_EQ(refused.output, "");
  for (const std::string& fault : faults) {
    EXPECT_THAT(warned.errors, HasSubstr("kiohost: warning: " + fault));
    EXPECT_THAT(refused.errors, HasSubstr("kiohost: " + fault));
  }
  EXPECT_THAT(refused.errors, EndsWith("could not use 3 nodes; the store is as it was\n"));
  EXPECT_THAT(RunKiohost({"--store", dir.File("s.db"), "--dump"}).output,
              HasSubstr("/uplink/conntype = DHCP\n"));
}

TEST(ProfileTest, NodesOfTheCommandLineAreWrittenToAStoreThatExists) {
  HostProcess host;
  ASSERT_TRUE(host.Start({"--set", "/sys/friendlyname=Attic"}));
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Attic");
  EXPECT_EQ(host.Node("/lan/wireless5:1/channel"), "36");
  EXPECT_EQ(host.End(SIGTERM), 0);
  // The list and the channel are held to each other and to what is stored.
  ASSERT_TRUE(host.Start({"--strict", "--set", "/SYS/FriendlyName=Cellar", "--set",
                          "/lan/wireless2.4:1/channellist=0,3", "--set",
                          "/lan/wireless2.4:1/channel=3", "--set", "/lan/wireless5:1/channel=40"}));
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Cellar");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/channel"), "3");
  EXPECT_THAT(Post(host.port(), "/settings", FactoryDocument()).body,
              HasSubstr("<RssSetResult>0</RssSetResult>"));
  EXPECT_EQ(host.End(SIGTERM), 0);
  const std::string before = host.Dump();
  const CommandResult refused = RunKiohost(
      {"--store", host.dir().File("store.db"), "--temp-dir", host.dir().path(), "--port", "0",
       "--strict", "--set", "/sys/friendlyname=Roof", "--set", "/lan/wireless2.4:1/channel=4"});
  EXPECT_EQ(refused.exit_code, 4);
  EXPECT_THAT(refused.errors, HasSubstr("--set: /lan/wireless2.4:1/channel: \"4\" is not in"));
  EXPECT_THAT(refused.errors, Not(HasSubstr("friendlyname")));
  EXPECT_EQ(host.Dump(), before);
}

}  // namespace
