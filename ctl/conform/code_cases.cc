// The codes of result documents.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

// Sends a document that is to be refused: with the code, in a dry run too, and leaving all as it
// is. The message ends with the text.
void ExpectRefusal(Conversation* talk, const Document& document, int code,
                   const std::string& message = "") {
  SkipUnless(!talk->facts().leaves_all_as_is, "the router leaves all as it is");
  const std::string name = NameOf(talk);
  Document renamed = document;
  if (document.Has(kNameElement) && document.Text(kNameElement) == name) {
    renamed.Set(kNameElement, OtherName(talk));
  }
  const Value forecast = Forecast(talk, renamed);
  const Answer answer = ApplyAndGo(talk, renamed);
  const ResultText result = answer.Result(code);
  talk->Settle(0);
  Expect(result.message.ends_with(message), answer.call + ": " + Shown(message) +
                                                " was expected to be named, and it is " +
                                                Shown(result.message));
  Expect(result.wait == 0,
         answer.call + ": a refusal promises " + std::to_string(result.wait) + " s");
  Expect(forecast["result"].Number() == code && forecast["message"].Text() == result.message,
         "the dry run foretells " + forecast["result"].Dump() + " " + forecast["message"].Dump());
  Expect(NameOf(talk) == name, "a refused document has changed the name to " + Shown(NameOf(talk)));
}

void OtherVersion(Conversation* talk) {
  Document document(talk->facts());
  ExpectRefusal(talk, document.Set("specVersion/minor", "7"), kVersionCode);
}

void NoVersion(Conversation* talk) {
  Document document(talk->facts());
  ExpectRefusal(talk, document.Remove("specVersion/major"), kMissingCode);
}

void NoName(Conversation* talk) {
  Document document(talk->facts());
  ExpectRefusal(talk, document.Remove(kNameElement), kMissingCode, kNameElement);
}

void NoUplink(Conversation* talk) {
  const auto configurable = talk->facts().values.find("rss_Upl_Configurable");
  SkipUnless(configurable != talk->facts().values.end() && configurable->second == "1",
             "the uplink cannot be changed");
  Document document(talk->facts());
  ExpectRefusal(talk, document.Remove("Device/UpLinkConnection"), kMissingCode, "UpLinkConnection");
}

void NoRadio(Conversation* talk) {
  const std::string radio = ARadio(talk);
  Document document(talk->facts());
  ExpectRefusal(talk, document.Remove("Device/" + radio), kMissingCode, radio);
}

void NoRadioName(Conversation* talk) {
  const std::string element = "Device/" + ARadio(talk) + "/WirelessName";
  Document document(talk->facts());
  ExpectRefusal(talk, document.Remove(element), kMissingCode, element);
}

void NoSuchMode(Conversation* talk) {
  const std::string element = "Device/" + ARadio(talk) + "/EncryptionMode";
  Document document(talk->facts());
  ExpectRefusal(talk, document.Set(element, "WPA9"), kInvalidCode, element);
}

void NoSuchChannel(Conversation* talk) {
  const std::string element = "Device/" + ARadio(talk) + "/Channel";
  SkipUnless(talk->facts().documents != "1.0", "documents of version 1.0 have no channel");
  Document document(talk->facts());
  ExpectRefusal(talk, document.Set(element, "999"), kInvalidCode, element);
}

void SwitchOutOfRange(Conversation* talk) {
  const std::string element = "Device/" + ARadio(talk) + "/WlEnbl";
  Document document(talk->facts());
  ExpectRefusal(talk, document.Set(element, "7"), kInvalidCode, element);
}

void KeyOfAnotherMode(Conversation* talk) {
  const std::string radio = "Device/" + ARadio(talk);
  Document document(talk->facts());
  SkipUnless(document.Text(radio + "/EncryptionMode").starts_with("WPA"),
             "the radio is not encrypted by WPA");
  ExpectRefusal(talk, document.Set(radio + "/EncryptionKey", "short"), kInvalidCode);
}

void ServiceOutOfRange(Conversation* talk) {
  Document document(talk->facts());
  SkipUnless(document.Has("Device/SafetyVyr/SafetyVyrEnbl"), "the router has no security service");
  ExpectRefusal(talk, document.Set("Device/SafetyVyr/SafetyVyrEnbl", "5"), kInvalidCode);
}

void BadAddress(Conversation* talk) {
  const auto configurable = talk->facts().values.find("rss_Upl_Configurable");
  SkipUnless(configurable != talk->facts().values.end() && configurable->second == "1" &&
                 talk->facts().documents != "1.0",
             "no document of this router can give the uplink another address");
  Document document(talk->facts());
  document.AddUplink(talk->facts());
  document.Set("Device/UpLinkConnection/ConnType", "Static")
      .Set("Device/UpLinkConnection/IP", "300.1.1.1");
  ExpectRefusal(talk, document, kInvalidCode);
}

// A name that the router's own check of the variable refuses with the code.
std::string NameFor(Conversation* talk, int code) {
  for (const std::string& name : {std::string(), std::string(127, 'x'), std::string("a\tb"),
                                  std::string("a\x7f"
                                              "b"),
                                  std::string("a\xc3\xa9"
                                              "b"),
                                  std::string("a~b")}) {
    const Answer answer = talk->Post(std::string(kNameVariable) + "/validate", name);
    if (answer.body.starts_with(std::to_string(code) + " ")) {
      return name;
    }
  }
  Skip("the rule of the name refuses nothing with code " + std::to_string(code));
}

void LengthOfAName(Conversation* talk) {
  const std::string name = NameFor(talk, kLengthCode);
  Document document(talk->facts());
  ExpectRefusal(talk, document.Set(kNameElement, name), kLengthCode, kNameElement);
}

void CharactersOfAName(Conversation* talk) {
  const std::string name = NameFor(talk, kCharacterCode);
  Document document(talk->facts());
  ExpectRefusal(talk, document.Set(kNameElement, name), kCharacterCode, kNameElement);
}

void LockedSwitch(Conversation* talk) {
  Document document(talk->facts());
  const std::string locked = document.Text("Device/RouterEnbl");
  SkipUnless(locked == "2" || locked == "3", "the router's mode is not locked");
  ExpectRefusal(talk, document.Set("Device/RouterEnbl", "1"), kInvalidCode);
}

// Values that come before the one that is refused.
void NothingIsHalfDone(Conversation* talk) {
  const std::string archive = talk->Get("/backup?secrets=1").body;
  const std::string radio = "Device/" + ARadio(talk);
  Document document = Named(talk, OtherName(talk));
  document.Set(radio + "/WirelessName", "Conform-Net").Set(radio + "/EncryptionMode", "WPA9");
  ApplyAndGo(talk, document).Result(kInvalidCode);
  Expect(talk->Get("/backup?secrets=1").body == archive, "a refused document has changed settings");
}

constexpr Case CodeCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /settings", .changes = true};
}

constexpr std::array kCodeRows = {
    CodeCase("codes.other-version", "A document of another format version gets 1.", OtherVersion),
    CodeCase("codes.no-version", "A document without its version gets 2.", NoVersion),
    CodeCase("codes.no-name", "A missing name gets 2 and is named.", NoName),
    CodeCase("codes.no-uplink", "A missing uplink gets 2 and is named.", NoUplink),
    CodeCase("codes.no-radio", "A missing radio gets 2 and is named.", NoRadio),
    CodeCase("codes.no-radio-name", "A missing element of a radio gets 2 and is named.",
             NoRadioName),
    CodeCase("codes.no-such-mode", "A word that there is not gets 3, and its element is named.",
             NoSuchMode),
    CodeCase("codes.no-such-channel",
             "A channel that is not in the radio's list gets 3, and its element is named.",
             NoSuchChannel),
    CodeCase("codes.switch-out-of-range",
             "A switch out of its range gets 3, and its element is named.", SwitchOutOfRange),
    CodeCase("codes.key-of-another-mode", "A key that the encryption mode does not take gets 3.",
             KeyOfAnotherMode),
    CodeCase("codes.service-out-of-range",
             "A switch of the security service out of its range gets 3.", ServiceOutOfRange),
    CodeCase("codes.bad-address", "An address of the uplink that is none gets 3.", BadAddress),
    Case{.name = "codes.length-of-a-name",
         .promise = "A name of a length out of range gets 10, as the check of its variable does.",
         .run = LengthOfAName,
         .needs = "POST /vars/{name}/validate",
         .changes = true},
    Case{.name = "codes.characters-of-a-name",
         .promise = "A name with a character that is not allowed gets 11, as the check of its "
                    "variable does.",
         .run = CharactersOfAName,
         .needs = "POST /vars/{name}/validate",
         .changes = true},
    CodeCase("codes.locked-switch", "A switch that is locked takes no other value: 3.",
             LockedSwitch),
    CodeCase("codes.nothing-is-half-done",
             "A refused document leaves every setting as it was, also those before the fault.",
             NothingIsHalfDone),
};

}  // namespace

const std::span<const Case> kCodeCases(kCodeRows);

}  // namespace kioctl::conform
