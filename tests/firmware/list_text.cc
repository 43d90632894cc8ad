#include "list_text.h"

namespace kio::test {

std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string MacList(const std::vector<std::string>& patterns) {
  std::string items;
  for (const std::string& pattern : patterns) {
    items += Element("MAC", pattern);
  }
  return Element("MacList", items);
}

std::string MatchList(const std::vector<std::string>& patterns) {
  std::string items;
  for (const std::string& pattern : patterns) {
    items += Element("Match", pattern);
  }
  return Element("MatchList", items);
}

std::string Range(const std::string& start, const std::string& end) {
  return Element("MACs", Element("Start", start) + Element("End", end));
}

std::string Entry(const std::string& lists, const std::string& name) {
  return Element("Firmware", lists + Element("FwURL", "/" + name + ".bin") +
                                 Element("NotesURL", "/" + name + ".txt"));
}

std::string FirmwareList(const std::string& entries) {
  return Element("root", Element("specVersion", Element("major", "1") + Element("minor", "0")) +
                             Element("FirmwareList", entries));
}

FirmwareTest::FirmwareTest() {
  host_.Reset();
  host_.Set("/fwupgradeinfo/devicemac", kMac);
  host_.Set("/fwupgradeinfo/currfwfilename", kRunning);
  fwXmlData = {};
  rssXmlData = {};
  log_file::Start(3);
}

FirmwareTest::~FirmwareTest() {
  fwXmlData = {};
  rssXmlData = {};
}

int FirmwareTest::Parse(const std::string& text) {
  std::string document = text;
  return do_FwXml_Parser(document.data(), file_url_, notes_url_);
}

int FirmwareTest::ParseList(const std::string& text, int kind, int length) {
  std::string document = text;
  return do_FwEntryList_Parser(document.data(), length, kind);
}

}  // namespace kio::test
