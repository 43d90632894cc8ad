// Text functions and validators.
#include <algorithm>

#include "buffers.h"
#include "kioapp/kioapp.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

void RunCoders(Random& random) {
  const std::string text =
      random.OneIn(3)
          ? CharactersOf(random, "%%%%%+abfgzABFGZ0123456789:/@`{ &;lt\x7f\xe4-._", Length(random))
          : Odd(random);
  const Buffer source(text);
  const int limit = random.OneIn(8) ? random.Between(-2, 1) : Length(random);
  Note("text", {text, limit});
  struct Coder {
    const char* name;
    char* (*run)(char* dst, const char* src, int n);
  };
  constexpr Coder kCoders[] = {{"strncpy_HtmlDecode", strncpy_HtmlDecode},
                               {"strncpy_HtmlEncode", strncpy_HtmlEncode},
                               {"strncpy_XmlDecode", strncpy_XmlDecode},
                               {"strncpy_XmlEncode", strncpy_XmlEncode}};
  for (const Coder& coder : kCoders) {
    // The URL encoder may write one character more than the limit.
    const Buffer dst(static_cast<std::size_t>(std::max(limit, 0) + 1));
    const char* const from = random.OneIn(50) ? nullptr : source.get();
    const char* const result = coder.run(dst.get(), from, limit);
    Answer(coder.name, {OffsetIn(result, dst.get(), dst.size()), dst.bytes()});
    if (random.OneIn(50)) {
      Answer(coder.name, {coder.run(nullptr, from, limit) == nullptr});
    }
  }
}

void RunReplacing(Random& random) {
  const std::string text =
      random.OneIn(3) ? CharactersOf(random, "ab$", Length(random)) : Odd(random);
  std::string key = CharactersOf(random, "ab$", random.Below(4));
  if (random.OneIn(3)) {
    key = text.substr(static_cast<std::size_t>(random.Below(static_cast<int>(text.size()) + 1)), 3);
  }
  const std::string replacement = random.OneIn(2) ? key + key : Odd(random, 8);
  const Buffer source(text);
  const Buffer wanted(key);
  const Buffer other(replacement);
  const Buffer dst((text.size() + 1) * (replacement.size() + 1));
  Note("replacing", {text, key, replacement});
  Answer("strChgKeyword",
         {strChgKeyword(dst.get(), source.get(), wanted.get(), other.get()), dst.bytes()});
  Store::Set("/runtime/zentrolinks/lanip", random.OneIn(4) ? Odd(random) : "$rssport.1");
  const Buffer address(std::size_t{256});
  const std::string keywords = AnyAddress(random).substr(0, 255);
  address.get()[keywords.copy(address.get(), keywords.size())] = '\0';
  Answer("strChgRssKeywords", {keywords, strChgRssKeywords(address.get()), address.bytes()});
}

void RunTrimming(Random& random) {
  const std::string text = CharactersOf(random, " \t\nab", random.Below(12)) + Odd(random) +
                           CharactersOf(random, " \t\r", random.Below(4));
  const Buffer trimmed(text);
  Answer("trim", {OffsetIn(trim(trimmed.get()), trimmed.get(), trimmed.size()), trimmed.bytes()});
  const Buffer source(text);
  const Buffer dst(text.size() + 1);
  Answer("trimTo", {OffsetIn(trimTo(dst.get(), source.get()), dst.get(), dst.size()), dst.bytes()});
  const Buffer stripped(text);
  const Buffer set(random.OneIn(2) ? " \t" : CharactersOf(random, " \tab\n", random.Below(4)));
  Answer("strip_chars",
         {OffsetIn(strip_chars(stripped.get(), set.get()), stripped.get(), stripped.size()),
          stripped.bytes()});
}

void RunWildcards(Random& random) {
  const std::string subject = CharactersOf(random, "abc\xe4", random.Below(9));
  const std::string pattern = random.OneIn(2)
                                  ? CharactersOf(random, "abc?*\xe4", random.Below(9))
                                  : subject + CharactersOf(random, "?", random.Below(3));
  const Buffer text(subject);
  const Buffer wanted(random.OneIn(3) ? Mutated(random, pattern, 1) : pattern);
  Answer("strWildcardCmp", {subject, wanted.text(), strWildcardCmp(text.get(), wanted.get())});
  Answer("strnWildcardCmp", {strnWildcardCmp(text.get(), wanted.get(), random.Between(-1, 10))});
}

std::string NearlyAddress(Random& random) {
  switch (random.Below(4)) {
    case 0:
      return Address(random);
    case 1:
      return Netmask(random);
    case 2:
      return Mutated(random, random.OneIn(2) ? Address(random) : Netmask(random), 1);
    default: {
      constexpr const char* kNumbers[] = {"0",   "1",   "127", "128",        "223",
                                          "224", "254", "255", "256",        "-1",
                                          " 5",  "",    "01",  "4294967296", "192"};
      std::string text;
      for (int i = random.OneIn(8) ? 3 : 4; i > 0; --i) {
        text += std::string(text.empty() ? "" : ".") + random.Of(kNumbers);
      }
      return text + (random.OneIn(8) ? "." : "");
    }
  }
}

void RunAddresses(Random& random) {
  const Buffer first(NearlyAddress(random));
  const Buffer second(random.OneIn(3) ? std::string(first.text()) : NearlyAddress(random));
  const Buffer mask(random.OneIn(4) ? NearlyAddress(random) : Netmask(random));
  Note("addresses", {first.text(), second.text(), mask.text()});
  Answer("is_Valid_IP", {is_Valid_IP(first.get())});
  Answer("is_Valid_Netmask", {is_Valid_Netmask(mask.get())});
  Answer("is_Valid_IP_CheckMask", {is_Valid_IP_CheckMask(mask.get(), first.get(), second.get())});
  const int value = random.Between(-3, 3);
  const int low = random.Between(-3, 3);
  Answer("is_in_range", {value, low, is_in_range(value, low, random.Between(-3, 3))});
}

void RunWirelessKeys(Random& random) {
  const Buffer key(random.OneIn(6) ? Odd(random, 80) : WirelessKey(random));
  constexpr int kLengths[] = {5, 13, 5, 13, 0, -1, 8, 2147483647};
  Answer("is_Valid_WpaPskKey", {key.text(), is_Valid_WpaPskKey(key.get())});
  Answer("is_Valid_WepKey", {is_Valid_WepKey(key.get(), random.Of(kLengths))});
}

std::string LongRule(Random& random) {
  std::string rule = random.OneIn(2) ? "0,900,0,1," : "0,900,0,0,";
  rule += random.OneIn(2) ? "1" : "0";
  if (random.OneIn(6)) {
    rule =
        "0,900,0,1,1,a-z," + std::string(static_cast<std::size_t>(random.Between(480, 520)), 'b');
  }
  for (int i = random.Below(random.OneIn(5) ? 300 : 34); i > 0; --i) {
    const char first = static_cast<char>(random.Between('#', '}'));
    rule += ",";
    rule += random.OneIn(12) ? "\\" : "";
    rule += first;
    if (random.OneIn(2)) {
      rule += '-';
      rule += static_cast<char>(first + random.Below(5));
    }
  }
  return rule;
}

void RunRules(Random& random) {
  const std::string rule_text = random.OneIn(2) ? Rule(random) : LongRule(random);
  const Buffer rule(random.OneIn(10) ? Mutated(random, rule_text, 2) : rule_text);
  const std::string value_text = random.OneIn(2) ? Odd(random) : Number(random);
  const Buffer value(random.OneIn(3) ? Letters(random, random.Below(70)) : value_text);
  Note("rule", {rule.text(), value.text()});
  Answer("validate_RssData", {validate_RssData(random.OneIn(60) ? nullptr : value.get(),
                                               random.OneIn(30) ? nullptr : rule.get())});
}

constexpr Kind kKinds[] = {
    {"coders", 3, RunCoders},       {"replacing", 2, RunReplacing},
    {"trimming", 2, RunTrimming},   {"wildcards", 2, RunWildcards},
    {"addresses", 3, RunAddresses}, {"wireless keys", 1, RunWirelessKeys},
    {"rules", 4, RunRules},
};

}  // namespace

const std::span<const Kind> kTextKinds = kKinds;

}  // namespace kio::differential
