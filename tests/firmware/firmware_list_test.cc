// The firmware list as a document: what is read, written and logged.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "list_text.h"

namespace kio::test {
namespace {

const std::string kAll = MacList({"*"});

void OnLostKey(const char* /*path*/, const char* /*key*/) { FAIL() << "no hook is called"; }

TEST_F(FirmwareTest, ServerIsTheBuildsWhateverTheNodeSays) {
  for (const char* const text : {"", "0", "1"}) {
    host_.Set("/fwupgradeinfo/isEngFwServer", text);
    host_.ClearCalls();
    EXPECT_STREQ(get_FwServerWebSite(), kServer);
    const std::vector<StoreCall> expected = {
        {StoreCall::Kind::kGetText, "/fwupgradeinfo/isEngFwServer", text}};
    EXPECT_EQ(host_.calls(), expected);
  }
}

TEST_F(FirmwareTest, NewerFileIsRecorded) {
  EXPECT_EQ(Parse(FirmwareList(Entry(kAll, "fw/AB12_FW1.0.8"))), 2);
  const std::string file = std::string(kServer) + "/fw/AB12_FW1.0.8.bin";
  const std::string notes = std::string(kServer) + "/fw/AB12_FW1.0.8.txt";
  EXPECT_STREQ(file_url_, file.c_str());
  EXPECT_STREQ(notes_url_, notes.c_str());
  EXPECT_STREQ(fwXmlData.fileUrl, file.c_str());
  EXPECT_STREQ(fwXmlData.notesUrl, notes.c_str());
  EXPECT_STREQ(fwXmlData.deviceMac, kMac);
  EXPECT_STREQ(fwXmlData.currFileName, kRunning);
  EXPECT_EQ(fwXmlData.specVersion.major, 1);
  EXPECT_EQ(fwXmlData.specVersion.minor, 0);
  EXPECT_EQ(fwXmlData.specVersion.combined, 100);
  EXPECT_STREQ(fwXmlData.specVersion.path, "specVersion");
  const std::vector<StoreCall> expected = {
      {StoreCall::Kind::kSetText, "/fwupgradeinfo/newfw/fileurl", file},
      {StoreCall::Kind::kSetText, "/fwupgradeinfo/newfw/notesurl", notes}};
  EXPECT_EQ(host_.Writes(), expected);
  EXPECT_TRUE(host_.commands().empty());
}

TEST_F(FirmwareTest, OutBuffersMayBeNull) {
  std::string document = FirmwareList(Entry(kAll, "new"));
  EXPECT_EQ(do_FwXml_Parser(document.data(), nullptr, nullptr), 2);
  document = FirmwareList(Entry(kAll, "new"));
  EXPECT_EQ(do_FwXml_Parser(document.data(), file_url_, nullptr), 2);
  EXPECT_STREQ(file_url_, (std::string(kServer) + "/new.bin").c_str());
  document = FirmwareList("");
  EXPECT_EQ(do_FwXml_Parser(document.data(), nullptr, notes_url_), 1);
  EXPECT_STREQ(notes_url_, "");
  EXPECT_EQ(do_FwXml_Parser(nullptr, file_url_, notes_url_), 0);
  EXPECT_STREQ(file_url_, "");
}

TEST_F(FirmwareTest, HookIsCleared) {
  XmlErrMsg_LostKey = OnLostKey;
  EXPECT_EQ(Parse("<root></root>"), 0);
  EXPECT_EQ(XmlErrMsg_LostKey, nullptr);
}

TEST_F(FirmwareTest, DocumentIsCutBehindTheRoot) {
  std::string document = FirmwareList("") + "<more>";
  EXPECT_EQ(do_FwXml_Parser(document.data(), nullptr, nullptr), 1);
  const std::string whole = FirmwareList("");
  EXPECT_EQ(std::string(document.c_str()), whole.substr(0, whole.size() - 7));
}

// Fails, with empty buffers and nothing written.
class BadDocumentTest : public FirmwareTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(BadDocumentTest, GivesZero) {
  EXPECT_EQ(Parse(GetParam()), 0);
  EXPECT_STREQ(file_url_, "");
  EXPECT_STREQ(notes_url_, "");
  EXPECT_TRUE(host_.Writes().empty());
}

std::string WithVersion(const std::string& version) {
  return Element("root", version + Element("FirmwareList", Entry(MacList({"*"}), "new")));
}
std::string Version(const std::string& major, const std::string& minor) {
  return Element("specVersion", Element("major", major) + Element("minor", minor));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, BadDocumentTest,
    ::testing::Values(
        "", "no list", "<root>", "<root/>", "<root />", "<root></root>", WithVersion(""),
        WithVersion("<specVersion/>"), WithVersion("<specVersion><major>1</major></specVersion>"),
        WithVersion("<specVersion><minor>0</minor></specVersion>"), WithVersion(Version("1", "1")),
        WithVersion(Version("2", "0")), WithVersion(Version("0", "0")),
        WithVersion(Version("-1", "0")), WithVersion(Version("one", "0")),
        Element("root", Version("1", "0")), Element("root", Version("1", "0") + "<FirmwareList>"),
        // Behind the root.
        Element("root", Version("1", "0")) + Element("FirmwareList", Entry(MacList({"*"}), "new")),
        // An entry that fits without its addresses.
        FirmwareList(Element("Firmware", MacList({"*"}))),
        FirmwareList(Element("Firmware", MacList({"*"}) + Element("FwURL", "/a"))),
        FirmwareList(Element("Firmware", MacList({"*"}) + Element("NotesURL", "/a"))),
        FirmwareList(Element("Firmware", MacList({"*"}) + "<FwURL>/a<NotesURL>/b</NotesURL>")),
        // Half a range, before an entry that fits.
        FirmwareList(Entry(Element("MacList", Element("MACs", Element("Start", "0"))), "a") +
                     Entry(MacList({"*"}), "new")),
        FirmwareList(Entry(Element("MacList", Element("MACs", Element("End", "F"))), "a") +
                     Entry(MacList({"*"}), "new")),
        // A list that is begun and not ended.
        FirmwareList(Element("Firmware", "<MacList>" + Element("MAC", "*")) +
                     Entry(MacList({"*"}), "new")),
        FirmwareList(Element("Firmware", "<MatchList>") + Entry(MacList({"*"}), "new"))));

TEST_F(FirmwareTest, VersionsCompareCombined) {
  EXPECT_EQ(Parse(WithVersion(Version("0", "100"))), 2);
  EXPECT_EQ(Parse(WithVersion(Version(" 1x", "0"))), 2);
  EXPECT_EQ(Parse(WithVersion(Version("2", "-100"))), 2);
}

TEST_F(FirmwareTest, NamesMatchInAnyCase) {
  EXPECT_EQ(Parse("<ROOT><SPECVERSION><MAJOR>1</major><Minor>0</MINOR></SpecVersion><firmwarelist>"
                  "<FIRMWARE><maclist><mac>*</MAC></MACLIST><fwurl>/A.bin</FWURL><notesurl>/A.txt"
                  "</NotesURL></firmware></FIRMWARELIST></root>"),
            2);
  EXPECT_STREQ(file_url_, (std::string(kServer) + "/A.bin").c_str());
}

TEST_F(FirmwareTest, TagsWithAttributesAreNotFound) {
  EXPECT_EQ(Parse(Element("root", Version("1", "0") + "<FirmwareList a='b'></FirmwareList>")), 0);
  EXPECT_EQ(Parse(FirmwareList("<Firmware id='1'>" + kAll + "</Firmware>" + Entry(kAll, "new"))),
            2);
}

// The file that runs is not newer.
class RunningTest : public FirmwareTest,
                    public ::testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(RunningTest, IsComparedByItsName) {
  host_.Set("/fwupgradeinfo/currfwfilename", "a.bin");
  const auto [address, result] = GetParam();
  EXPECT_EQ(Parse(FirmwareList(
                Element("Firmware", kAll + Element("FwURL", address) + Element("NotesURL", "/n")))),
            result);
  EXPECT_EQ(host_.Writes().empty(), result != 2);
  EXPECT_EQ(file_url_[0] == '\0', result != 2);
  EXPECT_EQ(notes_url_[0] == '\0', result != 2);
}

INSTANTIATE_TEST_SUITE_P(Addresses, RunningTest,
                         ::testing::Values(std::pair{"/a.bin", 1}, std::pair{"/fw/a.bin?x=1", 1},
                                           std::pair{"/fw/a.bin", 1}, std::pair{"/a.bin2", 2},
                                           std::pair{"/a.bi", 1}, std::pair{"/a", 1},
                                           std::pair{"/", 1}, std::pair{"/?a", 1},
                                           std::pair{"/A.bin", 2}, std::pair{"/b.bin", 2},
                                           std::pair{"/a.bin?x=/b.bin", 2},
                                           std::pair{"/b.bin?x=/a.bin", 1}, std::pair{"", 2},
                                           std::pair{"a.bin", 2}));

TEST_F(FirmwareTest, AddressesAreDecodedAndCut) {
  const std::string server = kServer;
  EXPECT_EQ(Parse(FirmwareList(Element("Firmware", kAll + Element("FwURL", "/a?b&amp;c&lt;") +
                                                       Element("NotesURL", "/n&#39;")))),
            2);
  EXPECT_EQ(file_url_, server + "/a?b&c<");
  EXPECT_EQ(notes_url_, server + "/n'");
  const std::string length(10000, 'u');
  EXPECT_EQ(Parse(FirmwareList(Element(
                "Firmware", kAll + Element("FwURL", length) + Element("NotesURL", length + "n")))),
            2);
  EXPECT_EQ(file_url_, (server + length).substr(0, 127));
  EXPECT_EQ(notes_url_, (server + length).substr(0, 127));
  EXPECT_EQ(host_.Text("/fwupgradeinfo/newfw/fileurl"), (server + length).substr(0, 127));
}

TEST_F(FirmwareTest, TextsOfTheStoreAreCut) {
  host_.Set("/fwupgradeinfo/devicemac", std::string(1000, 'm'));
  host_.Set("/fwupgradeinfo/currfwfilename", std::string(1000, 'f'));
  EXPECT_EQ(Parse(FirmwareList("")), 1);
  EXPECT_EQ(std::string(fwXmlData.deviceMac), std::string(17, 'm'));
  EXPECT_EQ(std::string(fwXmlData.currFileName), std::string(129, 'f'));
}

TEST_F(FirmwareTest, StateOfTheStoreIsReadEachTime) {
  const std::string list = FirmwareList(Entry(MacList({kMac}), "new"));
  EXPECT_EQ(Parse(list), 2);
  host_.Delete("/fwupgradeinfo/devicemac");
  EXPECT_EQ(Parse(list), 1);
  EXPECT_STREQ(fwXmlData.deviceMac, "");
}

TEST_F(FirmwareTest, LogOfAMatch) {
  log_file::Start(7);
  const std::string list = FirmwareList(Entry(
      Element("MacList", Element("MAC", "x") + Range("00", "FF")) + MatchList({"AB12*"}), "n"));
  EXPECT_EQ(Parse(list), 2);
  const std::vector<std::string> expected = {
      "1000:do_FwXml_Parser]",
      "---- Received FW XML Data Begin ----",
      list,
      "---- Received FW XML Data End ----",
      "1000:do_FwRoot_Parser]",
      "1000:prepareXmlBlockData]",
      "1000:do_FwEntryList_Parser]",
      "1000:do_FwFirmware_Parser]",
      "1000:do_FwEntryList_Parser]",
      std::string("Match 'x' with '") + kMac + "'",
      "1000:do_FwEntryList_Parser]",
      std::string("Match '00'~'FF' with '") + kMac + "'",
      "1000:do_FwEntryList_Parser]",
      std::string("Match 'AB12*' with '") + kRunning + "'",
      "done, ret=2",
      std::string("Final Match 'n.bin'(5) with '") + kRunning + "'",
      "done, ret=2"};
  std::vector<std::string> lines = log_file::Lines();
  EXPECT_EQ(lines, expected);
}

TEST_F(FirmwareTest, LogOfAListOfAnotherKind) {
  log_file::Start(7);
  EXPECT_EQ(ParseList(MacList({"*"}), 4), 0);
  EXPECT_EQ(log_file::Lines(), std::vector<std::string>{"1000:do_FwEntryList_Parser]"});
}

TEST_F(FirmwareTest, LogOfFailuresAtLevelSix) {
  const std::string begin = "---- Received FW XML Data Begin ----\n";
  const std::string end = "\n---- Received FW XML Data End ----\n";
  const auto log_of = [&](const std::string& list) {
    log_file::Start(6);
    Parse(list);
    std::string lines;
    for (const std::string& line : log_file::Lines()) {
      lines += line + "\n";
    }
    return lines;
  };
  const auto received = [&](const std::string& list) { return begin + list + end; };
  std::string list = WithVersion(Version("1", "1"));
  EXPECT_EQ(log_of(list), received(list) + "wrong specVersion 1.1\n");
  list = Element("root", Version("1", "0"));
  EXPECT_EQ(log_of(list), received(list) + "check FirmwareList fail\n");
  list = FirmwareList(Element("Firmware", kAll));
  EXPECT_EQ(log_of(list), received(list) + "FwURL not found\ncheck FirmwareList fail\n");
  list = FirmwareList(Element("Firmware", kAll + Element("FwURL", "/a")));
  EXPECT_EQ(log_of(list), received(list) + "NotesURL not found\ncheck FirmwareList fail\n");
  list = FirmwareList("");
  EXPECT_EQ(log_of(list), received(list));
}

TEST_F(FirmwareTest, LogOfTheRunningFile) {
  log_file::Start(7);
  host_.Set("/fwupgradeinfo/currfwfilename", "a.bin");
  EXPECT_EQ(Parse(FirmwareList(Element(
                "Firmware", kAll + Element("FwURL", "/fw/a.bin?x=1") + Element("NotesURL", "/n")))),
            1);
  const std::vector<std::string> lines = log_file::Lines();
  ASSERT_GE(lines.size(), 3U);
  const std::vector<std::string> last(lines.end() - 3, lines.end());
  const std::vector<std::string> expected = {
      "done, ret=2", "Final Match 'a.bin?x=1'(5) with 'a.bin'", "done, ret=1"};
  EXPECT_EQ(last, expected);
}

}  // namespace
}  // namespace kio::test
