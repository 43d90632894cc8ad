// Which entry of a firmware list fits: lists of each kind, and how they go together.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "list_text.h"

namespace kio::test {
namespace {

// Matches with the router's texts set in the record.
class MatchTest : public FirmwareTest {
 protected:
  MatchTest() {
    Put(fwXmlData.deviceMac, kMac);
    Put(fwXmlData.currFileName, kRunning);
  }
};

struct Case {
  int kind;
  std::string text;
  int result;
};

class ListTest : public MatchTest, public ::testing::WithParamInterface<Case> {};

TEST_P(ListTest, GivesTheResult) {
  EXPECT_EQ(ParseList(GetParam().text, GetParam().kind), GetParam().result) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Macs, ListTest,
    ::testing::Values(
        Case{1, MacList({"00:1A:2B:3C:4D:5E"}), 2}, Case{1, MacList({"00:1a:2b:3c:4d:5e"}), 1},
        Case{1, MacList({"00:1A:2B:3C:4D:5F"}), 1}, Case{1, MacList({"*"}), 2},
        Case{1, MacList({"00:1A:2B:*"}), 2}, Case{1, MacList({"00:1A:2B:??:??:??"}), 2},
        Case{1, MacList({"00:1A:2B:?"}), 1}, Case{1, MacList({"00:1A:2B:3C:4D:5E*"}), 2},
        Case{1, MacList({"00:1A:2B:3C:4D:5Eand more"}), 2},  // 17 characters are looked at
        Case{1, MacList({" 00:1A:2B:3C:4D:5E"}), 1}, Case{1, MacList({"a", "b", "*"}), 2},
        Case{1, MacList({"a", "", "*"}), 1}, Case{1, MacList({""}), 1}, Case{1, MacList({}), 1},
        Case{1, "<MacList><MAC>a</MAC><MAC/><MAC>*</MAC></MacList>", 1},
        Case{1, "<MacList><MAC/><MAC>*</MAC></MacList>", 1},
        Case{1, "<MacList><MAC /><MAC>*</MAC></MacList>", 1},
        Case{1, "<MacList><MAC>*</MacList>", 1}, Case{1, "<MacList><MAC>*</MAC>", 0},
        Case{1, "<MacList><MACs>*</MACs></MacList>", 1}, Case{1, Element("MAC", "*"), 0},
        Case{1, "", 0}, Case{1, "<x>" + MacList({"*"}) + "</x>", 2},
        // Items may stand in one another: the outer one is looked at first, then what is in it.
        Case{1, "<MacList><MAC>x<MAC>*</MAC></MAC></MacList>", 2},
        Case{1, "<MacList><MAC>x<MAC>y<MAC>*</MAC></MacList>", 2},
        Case{1, "<MacList><MAC>x<MAC/></MAC><MAC>*</MAC></MacList>", 1},
        Case{1, "<MacList><b><MAC>x</MAC></b> text <MAC>*</MAC></MacList>", 2},
        Case{1, "<MacList>\n <MAC>x</MAC>\n <MAC>*</MAC>\n</MacList>", 2}));

INSTANTIATE_TEST_SUITE_P(
    Ranges, ListTest,
    ::testing::Values(
        Case{2, Element("MacList", Range("00:1A:2B:3C:4D:5E", "FF")), 2},
        Case{2, Element("MacList", Range("00", "00:1A:2B:3C:4D:5E")), 2},
        Case{2, Element("MacList", Range("00:1A:2B:3C:4D:5E", "00:1A:2B:3C:4D:5E")), 2},
        Case{2, Element("MacList", Range("00:1A:2B:3C:4D:5F", "FF")), 1},
        Case{2, Element("MacList", Range("00", "00:1A:2B:3C:4D:5D")), 1},
        Case{2, Element("MacList", Range("FF", "00")), 1},
        Case{2, Element("MacList", Range("*", "*")), 2},
        Case{2, Element("MacList", Range("00:1A:2B:*", "00:1A:2B:*")), 2},
        Case{2, Element("MacList", Range("FF", "FF") + Range("00", "FF")), 2},
        Case{2, Element("MacList", Range("", "")), 1},
        Case{2, Element("MacList", Range("00:1A:2B:3C:4D:5Emore", "00:1A:2B:3C:4D:5Emore")), 2},
        Case{2, Element("MacList", Range("0&#48;", "FF")), 2},
        Case{2, Element("MacList", Element("MACs", Element("Start", "00"))), 0},
        Case{2, Element("MacList", Element("MACs", Element("End", "FF"))), 0},
        Case{2, Element("MacList", Element("MACs", "x") + Range("00", "FF")), 0},
        Case{2, "<MacList><MACs></MACs>" + Range("00", "FF") + "</MacList>", 1},
        Case{2, "<MacList><MACs/>" + Range("00", "FF") + "</MacList>", 1},
        Case{2, MacList({"*"}), 1}, Case{2, "<MacList>", 0}, Case{2, "", 0},
        Case{2, Element("MacList", Element("MACs", "<End>FF</End><Start>00</Start>")), 2}));

INSTANTIATE_TEST_SUITE_P(
    Names, ListTest,
    ::testing::Values(Case{3, MatchList({"AB12_FW1.0.2.bin"}), 2}, Case{3, MatchList({"AB12*"}), 2},
                      Case{3, MatchList({"ab12*"}), 1}, Case{3, MatchList({"AB12_FW1.0.?.bin"}), 2},
                      Case{3, MatchList({"AB12_FW1.0.2"}), 1},
                      Case{3, MatchList({"x", "y", "*"}), 2}, Case{3, MatchList({"x", "", "*"}), 1},
                      Case{3, "<MatchList><Match/><Match>*</Match></MatchList>", 1},
                      Case{3, "<MatchList><Match /></MatchList>", 1}, Case{3, "<MatchList/>", 1},
                      Case{3, Element("Match", "*"), 0}, Case{3, MacList({"*"}), 0}));

INSTANTIATE_TEST_SUITE_P(Kinds, ListTest,
                         ::testing::Values(Case{-1, MacList({"*"}), 0}, Case{4, MacList({"*"}), 0},
                                           Case{256, MacList({"*"}), 0},
                                           Case{0, Element("FirmwareList", ""), 1},
                                           Case{0, MacList({"*"}), 0}));

TEST_F(MatchTest, NullTextIsAnError) {
  EXPECT_EQ(do_FwEntryList_Parser(nullptr, 0, 1), 0);
  EXPECT_EQ(do_FwFirmware_Parser(nullptr, 0), 0);
}

TEST_F(MatchTest, LengthBoundsTheSearch) {
  const std::string list = MacList({"x", "*"});
  const auto size = static_cast<int>(list.size());
  EXPECT_EQ(ParseList(list, 1, size), 2);
  EXPECT_EQ(ParseList(list, 1, size - 1), 0) << "its closing tag is cut";
  EXPECT_EQ(ParseList(list, 1, size + 100), 2);
  EXPECT_EQ(ParseList(list, 1, -5), 2);
  EXPECT_EQ(ParseList(list, 1, 0), 2);
  EXPECT_EQ(ParseList(list, 1, 1), 0);
}

TEST_F(MatchTest, NameOf127CharactersIsCompared) {
  const std::string name(127, 'n');
  Put(fwXmlData.currFileName, name + "x");
  EXPECT_EQ(ParseList(MatchList({name + "x"}), 3), 1) << "the pattern is cut, the name is not";
  EXPECT_EQ(ParseList(MatchList({std::string(126, 'n') + "**"}), 3), 2);
  Put(fwXmlData.currFileName, name);
  EXPECT_EQ(ParseList(MatchList({name + "x"}), 3), 2);
}

TEST_F(MatchTest, PatternsAreNotDecoded) {
  Put(fwXmlData.currFileName, "a&b");
  EXPECT_EQ(ParseList(MatchList({"a&amp;b"}), 3), 1);
  EXPECT_EQ(ParseList(MatchList({"a&b"}), 3), 2);
}

TEST_F(MatchTest, HundredItemsAtMost) {
  std::vector<std::string> macs(99, "x");
  macs.emplace_back("*");
  EXPECT_EQ(ParseList(MacList(macs), 1), 2);
  macs.insert(macs.begin(), "x");
  EXPECT_EQ(ParseList(MacList(macs), 1), 1);
  std::string entries;
  for (int i = 0; i < 99; ++i) {
    entries += Entry(MacList({"x"}), "old");
  }
  EXPECT_EQ(ParseList(Element("FirmwareList", entries + Entry(MacList({"*"}), "new")), 0), 2);
  EXPECT_EQ(
      ParseList(Element("FirmwareList", entries + Entry("", "old") + Entry(MacList({"*"}), "new")),
                0),
      1);
}

// The walk through the MACs stops at the hundredth, short of the ranges behind it.
TEST_F(MatchTest, RangesBehindAHundredMacsAreTried) {
  for (const std::size_t count : {5U, 99U, 100U, 101U, 150U}) {
    std::string items;
    for (std::size_t i = 0; i < count; ++i) {
      items += Element("MAC", "x");
    }
    const std::string range = Element("MACs", Element("Start", "*") + Element("End", "*"));
    EXPECT_EQ(Parse(FirmwareList(Entry(Element("MacList", items + range), "new"))), 2) << count;
    const std::string half = Element("MACs", Element("Start", "*"));
    EXPECT_EQ(Parse(FirmwareList(Entry(Element("MacList", items + half), "new"))), 0) << count;
  }
}

// An empty list has the items of the rest of the document.
TEST_F(MatchTest, EmptyListReachesOn) {
  EXPECT_EQ(ParseList("<MacList></MacList><MAC>*</MAC>", 1), 2);
  EXPECT_EQ(ParseList("<MacList/> and <MAC>x</MAC> and <MAC>*</MAC>", 1), 2);
  EXPECT_EQ(ParseList("<MacList></MacList>", 1), 1);
  EXPECT_EQ(Parse(FirmwareList(Entry("<MacList/>", "first") + Entry(MacList({"*"}), "second"))), 2);
  EXPECT_STREQ(file_url_, (std::string(kServer) + "/first.bin").c_str());
}

struct EntryCase {
  const char* what;
  std::string lists;
  int result;
};

class EntryTest : public MatchTest, public ::testing::WithParamInterface<EntryCase> {};

TEST_P(EntryTest, GivesTheResult) {
  std::string entry = GetParam().lists + "<FwURL>/f</FwURL><NotesURL>/n</NotesURL>";
  EXPECT_EQ(do_FwFirmware_Parser(entry.data(), 0), GetParam().result) << GetParam().what;
  EXPECT_EQ(do_FwFirmware_Parser(entry.data(), static_cast<int>(entry.size())), GetParam().result);
  EXPECT_STREQ(fwXmlData.fileUrl,
               GetParam().result == 2 ? (std::string(kServer) + "/f").c_str() : "");
}

const std::string kMixed =
    Element("MacList", Element("MAC", "x") + Range("FF", "FF") + Element("MAC", "y"));

INSTANTIATE_TEST_SUITE_P(
    Entries, EntryTest,
    ::testing::Values(
        EntryCase{"neither list", "", 1}, EntryCase{"MAC alone", MacList({"*"}), 2},
        EntryCase{"name alone", MatchList({"*"}), 2},
        EntryCase{"both", MacList({"*"}) + MatchList({"*"}), 2},
        EntryCase{"names first", MatchList({"*"}) + MacList({"*"}), 2},
        EntryCase{"MAC does not fit", MacList({"x"}) + MatchList({"*"}), 1},
        EntryCase{"name does not fit", MacList({"*"}) + MatchList({"x"}), 1},
        EntryCase{"range after the addresses",
                  Element("MacList", Element("MAC", "x") + Range("00", "FF")), 2},
        EntryCase{"neither address nor range", kMixed, 1},
        EntryCase{"address after the ranges",
                  Element("MacList", Element("MACs", "bad") + Element("MAC", "*")), 2},
        EntryCase{"bad range", Element("MacList", Element("MACs", "bad")), 0},
        EntryCase{"MAC list not ended", "<MacList>", 0},
        EntryCase{"name list not ended", MacList({"*"}) + "<MatchList>", 0},
        EntryCase{"name list not ended, MAC does not fit", MacList({"x"}) + "<MatchList>", 1},
        EntryCase{"a list in another element", Element("b", MacList({"*"})), 2}));

TEST_F(MatchTest, FirstEntryThatFitsWins) {
  EXPECT_EQ(Parse(FirmwareList(Entry(MacList({"x"}), "a") + Entry("", "b") +
                               Entry(MacList({"*"}), "c") + Entry(MacList({kMac}), "d"))),
            2);
  EXPECT_STREQ(file_url_, (std::string(kServer) + "/c.bin").c_str());
}

// The entry that fits names the file that runs: later ones are not looked at.
TEST_F(MatchTest, RunningFileEndsTheSearch) {
  EXPECT_EQ(
      Parse(FirmwareList(Entry(MacList({"*"}), "AB12_FW1.0.2") + Entry(MacList({"*"}), "new"))), 1);
}

TEST_F(MatchTest, EmptyEntryEndsTheList) {
  EXPECT_EQ(Parse(FirmwareList("<Firmware></Firmware>" + Entry(MacList({"*"}), "new"))), 1);
  EXPECT_EQ(Parse(FirmwareList("<Firmware/>" + Entry(MacList({"*"}), "new"))), 1);
}

}  // namespace
}  // namespace kio::test
