// The finders and readers of XML, keyword tables, comparisons with the store and reads of nodes.
#include "buffers.h"
#include "device.h"
#include "document.h"
#include "kioapp/kioapp.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

// A name of few different characters, so that many names are nearly the same.
std::string TagName(Random& random) {
  constexpr const char* kNames[] = {"a", "ab", "aB", "abc", "Device", "AcRule", "MAC", "x"};
  if (random.OneIn(12)) {
    return std::string(static_cast<std::size_t>(random.Between(120, 130)), 'k') +
           (random.OneIn(2) ? "z" : "");
  }
  return random.OneIn(3) ? CharactersOf(random, "abA-", random.Between(1, 20)) : random.Of(kNames);
}

std::string Tags(Random& random, int depth) {
  std::string text;
  for (int i = random.Between(1, 5); i > 0; --i) {
    const std::string name = TagName(random);
    switch (random.Below(10)) {
      case 0:
        text += "<" + name + "/>";
        break;
      case 1:
        text += "<" + name + " />";
        break;
      case 2:
        text += "<" + name + ">";
        break;
      case 3:
        text += CharactersOf(random, "<>/ab ", random.Below(40));
        break;
      case 4:
        text +=
            std::string(static_cast<std::size_t>(random.Below(300)), random.OneIn(2) ? ' ' : '<');
        break;
      default:
        text += "<" + name + ">";
        text += depth > 0 ? Tags(random, depth - 1)
                          : (random.OneIn(2) ? Odd(random, 300) : Number(random));
        text += "</" + (random.OneIn(10) ? MixedCase(random, name) : name) + ">";
        break;
    }
  }
  return text;
}

std::string AnyBlock(Random& random) {
  if (random.OneIn(4)) {
    return TextOf(random, MakeDocument(random, random.Below(3)));
  }
  const std::string text = Tags(random, random.Below(3));
  return random.OneIn(4) ? Mutated(random, text, random.Between(1, 4)) : text;
}

struct Asked {
  std::string text;
  std::string key;
  int length;
};

Asked Ask(Random& random) {
  Asked asked{AnyBlock(random), TagName(random), 0};
  const auto size = static_cast<int>(asked.text.size());
  if (random.OneIn(2)) {
    // The key of a tag in the text.
    const std::size_t tag = asked.text.find('<', static_cast<std::size_t>(random.Below(size + 1)));
    const std::size_t end =
        tag == std::string::npos ? tag : asked.text.find_first_of(" />", tag + 1);
    if (end != std::string::npos) {
      asked.key = asked.text.substr(tag + 1, end - tag - 1);
    }
  }
  if (random.OneIn(20)) {
    asked.key = Odd(random, 150);
  }
  asked.length = random.OneIn(2) ? random.Between(-1, 0) : random.Below(size + 1);
  Note("block", {asked.text, asked.key, asked.length});
  return asked;
}

void RunFinders(Random& random) {
  const Asked asked = Ask(random);
  const Buffer text(asked.text);
  const Buffer key(asked.key);
  const auto place = [&text](const char* found) {
    return OffsetIn(found, text.get(), text.size());
  };
  int length = -7;
  int* const out = random.OneIn(8) ? nullptr : &length;
  const long contain = place(FindXmlKeyContain(text.get(), asked.length, key.get(), out));
  Answer("FindXmlKeyContain", {contain, length});
  length = -7;
  const int header_only = random.Between(-1, 1);
  const long found =
      place(FindXmlKeyContain_(text.get(), asked.length, key.get(), out, header_only));
  Answer("FindXmlKeyContain_", {found, length});
  Answer("SearchXmlKeyHeader", {place(SearchXmlKeyHeader(text.get(), asked.length, key.get()))});
  Answer("strstri", {place(strstri(text.get(), key.get()))});
  if (random.OneIn(30)) {
    Answer("FindXmlKeyContain", {place(FindXmlKeyContain(nullptr, 0, key.get(), out)), length});
    Answer("FindXmlKeyContain", {place(FindXmlKeyContain(text.get(), 0, nullptr, out)), length});
    Answer("SearchXmlKeyHeader", {place(SearchXmlKeyHeader(nullptr, 0, key.get()))});
  }
}

void RunSearch(Random& random) {
  const std::string set = random.OneIn(2) ? "abAB" : "ab<>/ eEtT.";
  const std::string text =
      CharactersOf(random, set, random.OneIn(6) ? random.Below(3000) : random.Below(120));
  std::string needle = CharactersOf(random, set, random.Below(9));
  if (random.OneIn(2)) {
    needle = text.substr(static_cast<std::size_t>(random.Below(static_cast<int>(text.size()) + 1)),
                         static_cast<std::size_t>(random.Below(60)));
    needle = MixedCase(random, needle);
  }
  const Buffer haystack(text);
  const Buffer wanted(needle);
  Note("search", {text, needle});
  Answer("strstri",
         {OffsetIn(strstri(haystack.get(), wanted.get()), haystack.get(), haystack.size())});
}

void ReportLostKey(const char* path, const char* key) { Event("lost key", {path, key}); }

void RunReaders(Random& random) {
  const Asked asked = Ask(random);
  const Buffer text(asked.text);
  const Buffer key(asked.key);
  const Buffer parent(random.OneIn(6) ? Odd(random, 200) : "Device/Part");
  XmlErrMsg_LostKey = random.OneIn(4) ? nullptr : ReportLostKey;
  AcceptChanges();
  constexpr int kRooms[] = {1, 2, 8, 16, 18, 32, 128, 300};
  const int room = random.Of(kRooms);
  const Buffer value(static_cast<std::size_t>(room));
  int number = -77;
  char* const block = random.OneIn(40) ? nullptr : text.get();
  const char* const name = random.OneIn(40) ? nullptr : key.get();
  const char* const path = random.OneIn(4) ? nullptr : parent.get();
  const int capacity = random.OneIn(20) ? 0 : room;
  const int found = GetXmlKeyStrValue_(block, asked.length, name, value.get(), capacity);
  Answer("GetXmlKeyStrValue_", {found, value.bytes()});
  const int has_number = GetXmlKeyIntValue_(block, asked.length, name, &number);
  Answer("GetXmlKeyIntValue_", {has_number, number});
  const Buffer again(static_cast<std::size_t>(room));
  const int found_again = GetXmlKeyStrValue(block, asked.length, path, name, again.get(), capacity);
  Answer("GetXmlKeyStrValue", {found_again, again.bytes()});
  const int has_again =
      GetXmlKeyIntValue(block, asked.length, path, name, random.OneIn(20) ? nullptr : &number);
  Answer("GetXmlKeyIntValue", {has_again, number});
  const Buffer out_path(std::size_t{128});
  int length = -7;
  const long place = OffsetIn(
      prepareXmlBlockData(path, text.get(), asked.length, key.get(), out_path.get(), &length),
      text.get(), text.size());
  Answer("prepareXmlBlockData", {place, length, out_path.bytes()});
  if (random.OneIn(30)) {
    const bool is_null = prepareXmlBlockData(path, text.get(), asked.length, nullptr,
                                             out_path.get(), nullptr) == nullptr;
    Answer("prepareXmlBlockData", {is_null, out_path.bytes()});
  }
}

const char* const kOwnTable[] = {"one", "", "Two", "three four", "\0_"};

void RunKeywords(Random& random) {
  const char* const* const tables[] = {
      DeviceTypeArray,   WlanEncrypTypeArray, WlanEncrypModeArray, HardwareTypeArray,
      WirelessTypeArray, ConnTypeArray,       ADslEncapModeArray,  kOwnTable};
  constexpr Maker kMakers[] = {DeviceType, EncryptionType, EncryptionMode, Hardware,
                               RadioWord,  Connection,     Encapsulation,  Odd};
  for (int i = 0; i < 8; ++i) {
    std::string text = kMakers[i](random);
    if (random.OneIn(4)) {
      text = random.OneIn(2) ? Mutated(random, text, 1) : MixedCase(random, text);
    }
    const Buffer word(text);
    const int code = SearchKeyArray(word.get(), tables[random.OneIn(5) ? random.Below(8) : i]);
    Answer("SearchKeyArray", {text, code, word.bytes()});
  }
  if (random.OneIn(20)) {
    Answer("SearchKeyArray", {SearchKeyArray(nullptr, kOwnTable)});
    const Buffer word("one");
    Answer("SearchKeyArray", {SearchKeyArray(word.get(), nullptr)});
    for (const char* const* table : tables) {
      for (; (*table)[0] != '\0' || (*table)[1] != '_'; ++table) {
        Event("word", {*table});
      }
    }
  }
}

void RunComparisons(Random& random) {
  for (int i = random.Between(1, 6); i > 0; --i) {
    const std::string path = random.OneIn(8) ? "/no/such/node" : AnyNode(random);
    if (random.OneIn(4)) {
      Store::Set(path, random.OneIn(2) ? Number(random) : Odd(random));
    }
    const Buffer node(path);
    const std::string stored = Store::Text(path).value_or("");
    const Buffer value(random.OneIn(2) ? stored : Odd(random));
    const int number = random.OneIn(2) ? random.Between(-2, 4) : static_cast<int>(random.Next());
    const int compare_only = random.Below(2);
    Answer("StrCmpWithXStr", {path, StrCmpWithXStr(value.get(), node.get(), compare_only)});
    Answer("IntCmpWithXStr", {path, IntCmpWithXStr(number, node.get(), compare_only)});
    int too_large = -5;
    const int differs =
        IntMaxCmpWithXStr(number, node.get(), compare_only, random.Between(-1, 4), &too_large);
    Answer("IntMaxCmpWithXStr", {path, differs, too_large});
  }
}

void RunNodes(Random& random) {
  for (int i = random.Between(1, 4); i > 0; --i) {
    const std::string path = random.OneIn(4) ? "/fwupgradeinfo/fwupgradeurl" : AnyNode(random);
    if (random.OneIn(2)) {
      Store::Set(path, random.OneIn(2) ? AnyAddress(random) : Odd(random));
    }
    const Buffer node(path);
    const Buffer absent(random.OneIn(3) ? Odd(random) : "default $lanip");
    const Buffer dst(std::size_t{256});
    const char* const text = random.OneIn(3) ? nullptr : absent.get();
    if (random.OneIn(3)) {
      Answer("getXNode", {getXNode(dst.get(), node.get(), text), dst.bytes()});
    } else {
      Answer("getXNode_",
             {getXNode_(dst.get(), node.get(), text, random.Between(-1, 1)), dst.bytes()});
    }
  }
}

constexpr Kind kKinds[] = {
    {"finders", 8, RunFinders},   {"search", 4, RunSearch},           {"readers", 6, RunReaders},
    {"keywords", 2, RunKeywords}, {"comparisons", 3, RunComparisons}, {"nodes", 3, RunNodes},
};

}  // namespace

const std::span<const Kind> kToolkitKinds = kKinds;

}  // namespace kio::differential
