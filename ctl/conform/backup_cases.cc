// Archives of the settings.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

void ArchiveDescribesItself(Conversation* talk) {
  const Value archive = talk->Get("/backup").Is(kGood).Json();
  for (const char* const member : {"format", "model", "firmware", "documents", "hash"}) {
    Expect(archive[member].Is(Value::Kind::kText), std::string("the archive has no ") + member);
  }
  Expect(archive["formatVersion"].Number() == 1,
         "formatVersion is " + archive["formatVersion"].Dump());
  Expect(archive["model"].Text() == talk->Device()["model"].Text(),
         "the archive is of " + archive["model"].Dump());
  Expect(archive["secrets"].Is(Value::Kind::kFlag) && !archive["secrets"].Flag(),
         "secrets is " + archive["secrets"].Dump());
  Expect(archive["settings"]["Device"].Is(Value::Kind::kObject), "the archive has no settings");
}

void NoSecretsUnasked(Conversation* talk) {
  const Answer plain = talk->Get("/backup");
  const Value device = plain.Is(kGood).Json()["settings"]["Device"];
  Expect(device["DevicePwd"].IsAbsent(), "an archive without secrets has the password");
  for (const std::string& secret : talk->facts().secrets) {
    Expect(!Contains(plain.body, "\"" + secret + "\""), "an archive without secrets has one");
  }
  const Value whole = talk->Get("/backup?secrets=1").Is(kGood).Json();
  Expect(whole["secrets"].Flag(),
         "with secrets=1 the member secrets is " + whole["secrets"].Dump());
  Expect(!whole["settings"]["Device"]["DevicePwd"].IsAbsent(),
         "with secrets=1 there is no password");
  talk->Get("/backup?secrets=2").Is(kMalformed).IsOneLine();
}

void SameSettingsSameArchive(Conversation* talk) {
  Expect(talk->Get("/backup").body == talk->Get("/backup").body,
         "two archives of the same settings differ");
}

void HashFollowsTheSettings(Conversation* talk) {
  const std::string hash = talk->Get("/backup").Json()["hash"].Text();
  Apply(talk, Named(talk, OtherName(talk))).Result(kDoneCode);
  Expect(talk->Get("/backup").Json()["hash"].Text() != hash,
         "the settings have changed, and the hash has not");
}

void ArchiveIsTaken(Conversation* talk) {
  SkipUnless(talk->facts().way_back == WayBack::kArchive, talk->facts().why_not);
  const Value forecast =
      talk->Post("/restore?dry-run=1", talk->Get("/backup").body).Is(kGood).Json();
  Expect(forecast["result"].Number() == 0 && forecast["nodes"].size() == 0,
         "the archive of the present settings would change " + forecast["nodes"].Dump());
}

void ArchiveBringsBack(Conversation* talk) {
  SkipUnless(talk->facts().way_back == WayBack::kArchive, talk->facts().why_not);
  const std::string before = NameOf(talk);
  const std::string archive = talk->Get("/backup").Is(kGood).body;
  Apply(talk, Named(talk, OtherName(talk))).Result(kDoneCode);
  const Answer answer = talk->Post("/restore", archive);
  talk->Settle(answer.Result(kDoneCode).wait);
  answer.Has("kio-apply-id");
  Expect(NameOf(talk) == before,
         "the archive has " + Shown(before) + ", and the name is " + Shown(NameOf(talk)));
}

// The archive of the present settings with something else in the place of the first `old`. The
// order of its members counts for the hash, so nothing else is touched.
std::string Changed(Conversation* talk, const std::string& old, const std::string& other) {
  std::string archive = talk->Get("/backup").Is(kGood).body;
  const size_t at = archive.find(old);
  Expect(at != std::string::npos, "the archive lacks " + old);
  return archive.replace(at, old.size(), other);
}

void ExpectMisfit(Conversation* talk, const std::string& archive) {
  const std::string name = NameOf(talk);
  talk->Post("/restore", archive).Is(kRefusedValue).IsOneLine();
  Expect(NameOf(talk) == name, "an archive that does not fit has changed the name");
}

// A member of the archive as JSON.
std::string MemberOf(Conversation* talk, const char* member) {
  return talk->Get("/backup").Is(kGood).Json()[member].Dump();
}

void OtherModel(Conversation* talk) {
  ExpectMisfit(talk, Changed(talk, MemberOf(talk, "model"), "\"No such model\""));
}

void OtherFirmware(Conversation* talk) {
  const std::string archive = Changed(talk, MemberOf(talk, "firmware"), "\"No such firmware\"");
  ExpectMisfit(talk, archive);
  SkipUnless(talk->facts().way_back == WayBack::kArchive, talk->facts().why_not);
  talk->Post("/restore?dry-run=1&other-firmware=1", archive).Is(kGood);
}

void Damaged(Conversation* talk) {
  ExpectMisfit(talk, Changed(talk, "\"DeviceName\": \"", "\"DeviceName\": \"x"));
}

void UnknownSetting(Conversation* talk) {
  ExpectMisfit(talk, Changed(talk, "\"DeviceName\"", "\"NoSuchSetting\": \"1\", \"DeviceName\""));
}

void NoArchive(Conversation* talk) {
  for (const char* const body : {"{}", "[]", "no JSON"}) {
    talk->Post("/restore", body).Is(kRefusedValue).IsOneLine();
  }
}

constexpr Case RestoreCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /restore", .changes = true};
}

constexpr std::array kBackupRows = {
    Case{"backup.describes-itself",
         "An archive names its format, model, firmware, version of documents and hash.",
         ArchiveDescribesItself, "GET /backup"},
    Case{.name = "backup.no-secrets-unasked",
         .promise = "Passwords and keys stand in an archive with secrets=1 alone.",
         .run = NoSecretsUnasked,
         .needs = "GET /backup",
         .changes = true},
    Case{"backup.same-settings-same-archive", "Two archives of the same settings are the same.",
         SameSettingsSameArchive, "GET /backup"},
    Case{.name = "backup.hash-follows-the-settings",
         .promise = "Other settings have another hash.",
         .run = HashFollowsTheSettings,
         .needs = "GET /backup",
         .changes = true},
    RestoreCase("backup.is-taken",
                "The archive of the present settings changes nothing, as its dry run tells.",
                ArchiveIsTaken),
    RestoreCase("backup.brings-back", "POST /restore brings the settings of an archive back.",
                ArchiveBringsBack),
    RestoreCase("backup.other-model", "An archive of another model gets 422 and changes nothing.",
                OtherModel),
    RestoreCase("backup.other-firmware",
                "An archive of another firmware gets 422 unless other-firmware=1 takes it.",
                OtherFirmware),
    RestoreCase("backup.damaged",
                "An archive whose settings are not those of its hash gets 422 and changes nothing.",
                Damaged),
    RestoreCase("backup.unknown-setting",
                "An archive with a setting that the device has not gets 422.", UnknownSetting),
    RestoreCase("backup.no-archive", "What is no archive gets 422.", NoArchive),
};

}  // namespace

const std::span<const Case> kBackupCases(kBackupRows);

}  // namespace kioctl::conform
