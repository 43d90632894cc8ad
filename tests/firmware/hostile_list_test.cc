// Firmware lists that mean harm: of any length and shape.
#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "list_text.h"
#include "support/guarded_text.h"
#include "testing/firmware_list_model.h"

namespace kio::test {
namespace {

class HostileListTest : public FirmwareTest {
 protected:
  // What the library makes of a list.
  ListResult Result(const std::string& text) {
    ListResult result;
    result.result = Parse(text);
    result.file_url = file_url_;
    result.notes_url = notes_url_;
    return result;
  }
};

std::string Repeated(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

// Texts put together from pieces of lists, by a number.
std::string SomeList(unsigned int number) {
  static const std::vector<std::string> kPieces = {"<Firmware>",
                                                   "</Firmware>",
                                                   "<Firmware/>",
                                                   "<MacList>",
                                                   "</MacList>",
                                                   "<MacList/>",
                                                   "<MacList />",
                                                   "<MAC>",
                                                   "</MAC>",
                                                   "<MAC/>",
                                                   "<MAC />",
                                                   "<MACs>",
                                                   "</MACs>",
                                                   "<MACs/>",
                                                   "<Start>",
                                                   "</Start>",
                                                   "<End>",
                                                   "</End>",
                                                   "<MatchList>",
                                                   "</MatchList>",
                                                   "<MatchList/>",
                                                   "<Match>",
                                                   "</Match>",
                                                   "<Match/>",
                                                   "<Match />",
                                                   "<FwURL>/n?x</FwURL>",
                                                   "<FwURL>",
                                                   "<NotesURL>/t</NotesURL>",
                                                   "<FwURL/>",
                                                   "<NotesURL/>",
                                                   "</FirmwareList>",
                                                   "<FirmwareList>",
                                                   "*",
                                                   "00:1A:2B:*",
                                                   "FF",
                                                   "AB12*",
                                                   "x",
                                                   " ",
                                                   "<",
                                                   "</",
                                                   "<MAC",
                                                   "MAC>",
                                                   "<mac>",
                                                   "</mAtCh>",
                                                   "<MACs><Start>00</Start><End>FF</End></MACs>",
                                                   "<MAC>*</MAC>",
                                                   "<MAC>x</MAC>",
                                                   "<Match>x</Match>",
                                                   "<Match>*</Match>",
                                                   "<MacList><MAC>*</MAC></MacList>",
                                                   "</root>"};
  std::mt19937 random(number);
  std::string entries;
  const auto count = random() % 40;
  for (unsigned long i = 0; i < count; ++i) {
    entries += kPieces[random() % kPieces.size()];
  }
  // Mostly an entry of some kind around it.
  return FirmwareList(random() % 3 == 0 ? entries : Element("Firmware", entries) + entries);
}

TEST_F(HostileListTest, AnyListIsReadAsTheModelReadsIt) {
  int matches = 0;
  for (unsigned int number = 0; number < 20000; ++number) {
    const std::string list = SomeList(number);
    const ListResult expected = ModelFirmwareList(list, kMac, kRunning);
    ASSERT_EQ(Result(list), expected) << number << ": " << list;
    matches += expected.result == 2 ? 1 : 0;
  }
  EXPECT_GT(matches, 200);
}

// Lists that reach to the end of the document, and entries, lists and ranges that share one closing
// tag: items of the one are items of the next.
std::string SomeSharedList(unsigned int number) {
  static const std::vector<std::string> kPieces = {
      "<Firmware><MacList></MacList></Firmware>",
      "<Firmware><MacList/></Firmware>",
      "<Firmware><MatchList></MatchList></Firmware>",
      "<Firmware><MacList></MacList><MatchList></MatchList></Firmware>",
      "<Firmware><MacList><MAC>*</MAC></MacList><MatchList/></Firmware>",
      "<Firmware><FwURL>/n</FwURL><NotesURL>/t</NotesURL><MacList></MacList></Firmware>",
      "<Firmware><FwURL>/m</FwURL><NotesURL>/t</NotesURL><MatchList /></Firmware>",
      "<Firmware>",
      "<Firmware><MacList>",
      "<Firmware><MacList/>",
      "<Firmware><MatchList>",
      "</Firmware>",
      "</MacList>",
      "</MatchList>",
      "<MAC>x</MAC>",
      "<MAC>",
      "<MAC/>",
      "</MAC>",
      "<MAC>00:1A:2B:*</MAC>",
      "<Match>x</Match>",
      "<Match>",
      "</Match>",
      "<Match>AB12*</Match>",
      "<Match></Match>",
      "<MACs><Start>FF</Start><End>FF</End></MACs>",
      "<MACs>",
      "<MACs><Start>FF</Start>",
      "<MACs><Start>00</Start>",
      "<End>FF</End>",
      "<Start>FF</Start><End>00</End>",
      "<Start/>",
      "<End/>",
      "</MACs>",
      Repeated(99, "<MAC>x</MAC>"),
      Repeated(99, "<Match>x</Match>"),
      Repeated(99, "<MACs><Start>FF</Start><End>FF</End></MACs>"),
  };
  std::mt19937 random(number);
  std::string entries;
  const auto count = random() % 30;
  for (unsigned long i = 0; i < count; ++i) {
    entries += kPieces[random() % kPieces.size()];
  }
  entries += random() % 2 == 0 ? "<FwURL>/o</FwURL><NotesURL>/t</NotesURL></Firmware>" : "";
  return FirmwareList(entries);
}

TEST_F(HostileListTest, SharedItemsAreReadAsTheModelReadsThem) {
  constexpr unsigned int kLists = KIO_TEST_EMULATED ? 300 : 1500;
  int results[3] = {};
  for (unsigned int number = 0; number < kLists; ++number) {
    const std::string list = SomeSharedList(number);
    const ListResult expected = ModelFirmwareList(list, kMac, kRunning);
    ASSERT_EQ(Result(list), expected) << number << ": " << list;
    ++results[expected.result];
  }
  for (const int count : results) {
    EXPECT_GT(count, static_cast<int>(kLists / 20));
  }
}

// What is known of an item already is told for each list that has it.
TEST_F(HostileListTest, TheLogTellsOfEachTestOfASharedItem) {
  const std::string list = FirmwareList(
      Repeated(3, "<Firmware><MacList></MacList></Firmware>") + "<MAC>x</MAC><MAC>y</MAC>" +
      "<MACs><Start>FF</Start><End>FF</End><MACs><Start>FE</Start><End>FE</End></MACs>" +
      "<Firmware>x<Firmware><MatchList><Match>z</Match></MatchList></Firmware>");
  EXPECT_EQ(Parse(list), 1);
  log_file::Start(7);
  EXPECT_EQ(Parse(list), 1);
  std::vector<std::string> tests;
  for (const std::string& line : log_file::Lines()) {
    if (line.compare(0, 7, "Match '") == 0) {
      tests.push_back(line.substr(0, line.find(" with ")));
    }
  }
  std::vector<std::string> expected;
  for (int i = 0; i < 3; ++i) {
    expected.insert(expected.end(),
                    {"Match 'x'", "Match 'y'", "Match 'FF'~'FF'", "Match 'FE'~'FE'"});
  }
  expected.insert(expected.end(), {"Match 'z'", "Match 'z'"});
  EXPECT_EQ(tests, expected);
}

// Cut anywhere, as a search step that reads 4096 characters may do.
TEST_F(HostileListTest, CutListsAreReadAsTheModelReadsThem) {
  const std::string list =
      FirmwareList(Entry(Element("MacList", Element("MAC", "x") + Range("FF", "FF")), "a") +
                   Entry(MacList({"*"}) + MatchList({"x", "AB*"}), "b"));
  for (std::size_t size = 0; size <= list.size(); ++size) {
    const std::string cut = list.substr(0, size);
    ASSERT_EQ(Result(cut), ModelFirmwareList(cut, kMac, kRunning)) << size;
    // The root ended there.
    const std::string ended = cut + "</root>";
    ASSERT_EQ(Result(ended), ModelFirmwareList(ended, kMac, kRunning)) << size;
  }
}

// The lists are read where they lie, and nothing behind their end is.
TEST_F(HostileListTest, NothingBehindTheTextIsRead) {
  for (const std::string& text :
       {MacList({"x", "*"}), std::string("<MacList><MAC>x</MAC><MAC"), std::string("<MacList>"),
        std::string("<MacList><MAC>x</MA"), std::string("<Mac"), std::string()}) {
    const GuardedText guarded(text);
    const int expected = text.find("</MacList>") != std::string::npos ? 2 : 0;
    fwXmlData = {};
    EXPECT_EQ(do_FwEntryList_Parser(guarded.get(), 0, 1), expected);
    EXPECT_EQ(do_FwEntryList_Parser(guarded.get(), 1 << 30, 1), expected);
    do_FwFirmware_Parser(guarded.get(), 0);
  }
}

TEST_F(HostileListTest, LongTextsAreCut) {
  const std::string length(10000, 'u');
  EXPECT_EQ(
      Parse(FirmwareList(Element(
          "Firmware", MacList({length, "*" + length}) + MatchList({length, "AB*" + length}) +
                          Element("FwURL", "/" + length) + Element("NotesURL", "/" + length)))),
      2);
  EXPECT_EQ(std::string(file_url_).size(), 127U);
  EXPECT_EQ(Parse(FirmwareList(Entry(
                Element("MacList", Range(length, length) + Range("00", "FF" + length)), "n"))),
            2);
}

// Shapes that make a naive search pass over the text again and again, which takes hours. None takes
// seconds of the processor, on whatever machine.
TEST_F(HostileListTest, MegabytesOfAnyShapeAreReadInTime) {
  constexpr double kMostSeconds = 30;
  // An emulated machine is slow.
  constexpr int kMany = KIO_TEST_EMULATED ? 10000 : 200000;
  const std::string filler(KIO_TEST_EMULATED ? 20000 : 400000, 'f');
  const std::string nested = Repeated(100, "<Firmware>x") + "<MacList>" + Repeated(100, "<MAC>x") +
                             filler + "</MAC></MacList>" + "<MatchList>" +
                             Repeated(100, "<Match>x") + filler + "</Match></MatchList>";
  const std::vector<std::string> lists = {
      FirmwareList(Repeated(kMany, Entry(MacList({"x"}), "n"))),
      FirmwareList(Repeated(kMany, "<Firmware>")),
      FirmwareList(Repeated(kMany, "<Firmware>") + "</Firmware>"),
      FirmwareList(Repeated(100, Element("Firmware", "<MacList/>")) + filler),
      FirmwareList(Repeated(100, Element("Firmware", "<MacList></MacList>x")) +
                   Repeated(kMany, "<MAC>x</MAC>")),
      FirmwareList(nested + "</Firmware>" + filler),
      FirmwareList(Element("Firmware", MacList(std::vector<std::string>(kMany, "x")))),
      FirmwareList(
          Element("Firmware", "<MacList>" + Repeated(kMany, "<MAC>x") + "</MAC></MacList>")),
      FirmwareList(Repeated(kMany, "<MAC/>") + Repeated(kMany, "<")),
      "<root>" + filler + filler,
      filler,
  };
  for (std::size_t i = 0; i < lists.size(); ++i) {
    // Processor time: the machine may be busy with something else.
    const std::clock_t begin = std::clock();
    EXPECT_NE(Parse(lists[i]), 2) << i;
    const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    EXPECT_LT(seconds, kMostSeconds) << i << ": " << lists[i].size() << " characters";
  }
}

}  // namespace
}  // namespace kio::test
