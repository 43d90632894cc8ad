// Settings exchanges: a document in, a result document out, and the commit.
#include <cerrno>

#include "buffers.h"
#include "device.h"
#include "document.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "texts.h"

namespace kio::differential {
namespace {

void Exchange(Random& random, const std::string& text, bool clones) {
  const Buffer document(text);
  Note("document", {text});
  errno = 0;
  int result = 0;
  if (random.OneIn(20)) {
    result = do_RssXml_Parser_(document.get());
  } else {
    result =
        clones ? do_RssXml_Parser_for_ApCloning(document.get()) : do_RssXml_Parser(document.get());
  }
  const int left_in_errno = errno;
  Answer("parser", {result, left_in_errno, document.bytes()});
}

int Faults(Random& random) { return random.Chance(55) ? 0 : random.Between(1, 4); }

void RunDocument(Random& random) {
  const bool clones = random.OneIn(4);
  const std::string text = TextOf(random, MakeDocument(random, Faults(random)));
  Exchange(random, text, clones);
  if (random.OneIn(2)) {
    Commit(random);
  }
  // The same document again: nothing is left to change.
  if (random.OneIn(6)) {
    Exchange(random, text, clones);
    Commit(random);
  }
}

// Several documents on one device, as apps send them.
void RunSeries(Random& random) {
  const bool clones = random.OneIn(4);
  for (int i = random.Between(2, 4); i > 0; --i) {
    Exchange(random, TextOf(random, MakeDocument(random, Faults(random))), clones);
    if (random.OneIn(2)) {
      Commit(random);
    }
    if (random.OneIn(3)) {
      ChangeDevice(random);
    }
  }
}

void RunMutatedDocument(Random& random) {
  Exchange(random, MutatedDocument(random), random.OneIn(4));
  if (random.OneIn(3)) {
    Commit(random);
  }
}

void RunNoDocument(Random& random) {
  switch (random.Below(4)) {
    case 0:
      Answer("parser", {do_RssXml_Parser(nullptr)});
      break;
    case 1:
      Answer("parser", {do_RssXml_Parser_for_ApCloning(nullptr)});
      break;
    default:
      Exchange(random, random.OneIn(2) ? "" : Odd(random), random.OneIn(2));
      break;
  }
}

// The exported parsers of parts of a document: a version, a provider and an upstream network.
void RunPartParsers(Random& random) {
  constexpr const char* kParents[] = {nullptr, "Device", "", "Device/UpLinkConnection"};
  constexpr const char* kKeys[] = {"specVersion", "DSL", "APN", "ExtenderSite", "Device", "AcRule"};
  const std::string text = random.OneIn(3) ? MutatedDocument(random)
                                           : TextOf(random, MakeDocument(random, random.Below(4)));
  const Buffer block(text);
  Note("block", {text});
  const int length = random.OneIn(2) ? 0 : random.Between(-1, static_cast<int>(text.size()));
  XmlErrMsg_LostKey = random.OneIn(3) ? nullptr : write_RssXml_LostKeyError;
  AcceptChanges();
  const Buffer parent(random.OneIn(8) ? Letters(random, 130) : "Device");
  const char* const parent_path = random.OneIn(3) ? parent.get() : random.Of(kParents);
  const char* const key = random.Of(kKeys);
  RssSpecVersion version = {};
  const int has_version = do_XmlSpecVersion_Parser(parent_path, block.get(), length, &version, key);
  Answer("do_XmlSpecVersion_Parser",
         {has_version, version.major, version.minor, version.combined, version.path});
  RssIsp isp = {};
  const int has_isp = do_RssISP_Parser(parent_path, block.get(), length, &isp, key);
  Answer("do_RssISP_Parser",
         {has_isp, std::string_view(reinterpret_cast<const char*>(&isp), sizeof(isp))});
  RssExtenderSite site = {};
  const int has_site = do_RssExtender_Parser(parent_path, block.get(), length, &site);
  Answer("do_RssExtender_Parser",
         {has_site, std::string_view(reinterpret_cast<const char*>(&site), sizeof(site))});
}

constexpr Kind kKinds[] = {
    {"document", 24, RunDocument},
    {"series of documents", 4, RunSeries},
    {"mutated document", 8, RunMutatedDocument},
    {"no document", 1, RunNoDocument},
    {"parts of a document", 3, RunPartParsers},
};

}  // namespace

const std::span<const Kind> kExchangeKinds = kKinds;

void Commit(Random& random) {
  switch (random.Below(7)) {
    case 0:
      Answer("do_RssVar_Commit", {do_RssVar_Commit()});
      break;
    case 1:
      Answer("do_RssXml_Commit_for_ApCloning", {do_RssXml_Commit_for_ApCloning(1)});
      break;
    case 2:
      Answer("do_RssXml_Commit_for_ApCloning",
             {do_RssXml_Commit_for_ApCloning(random.Between(-1, 2))});
      break;
    default:
      Answer("do_RssXml_Commit", {do_RssXml_Commit()});
      break;
  }
}

}  // namespace kio::differential
