#include "side_reader.h"

#include "answers.h"
#include "catalogue.h"
#include "delivered.h"
#include "files.h"
#include "password.h"
#include "sealed.h"

namespace kioctl {
namespace {

using nlohmann::json;

bool IsUrl(const std::string& word) {
  return word.starts_with("http://") || word.starts_with("https://");
}

// The first character that is none of a blank, behind the mark of UTF-8.
char FirstOf(const std::string& text) {
  const size_t begin = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  const size_t at = text.find_first_not_of(" \t\r\n", begin);
  return at == std::string::npos ? '\0' : text[at];
}

Side SideOfArchiveText(const std::string& name, const std::string& text) {
  const json archive = json::parse(text, nullptr, false);
  if (!archive.is_object() || !archive.contains("settings") || !archive["settings"].is_object()) {
    throw Failure{ExitCode::kLocal, name + " is no archive of settings",
                  "name a file that kioctl backup has written"};
  }
  try {
    return SideOfArchive(Side::Kind::kArchive, name, archive);
  } catch (const json::exception&) {
    throw Failure{ExitCode::kLocal, name + " is damaged: a setting of it is no text",
                  "name a file as kioctl backup has written it"};
  }
}

}  // namespace

std::string OpenedArchive(const std::string& text) {
  return IsSealed(text) ? Unseal(text, Passphrase(false)) : text;
}

Side SideOfRouter(Router* router, bool secrets) {
  const std::string query = secrets ? "?secrets=1" : "";
  const json archive = ReadJson(router->Ask({.path = "/backup" + query}).body);
  Side side = SideOfArchive(Side::Kind::kRouter, router->url(), archive);
  // What an app cannot set is not in the archive.
  const json values = ReadJson(router->Ask({.path = "/vars?values=1"}).body);
  std::map<std::string, std::string> by_name;
  for (const json& variable : values.at("variables")) {
    if (!variable.value("secret", false)) {
      by_name[variable.at("name")] = variable.at("value");
    }
  }
  for (const Setting& setting : Catalogue()) {
    const auto value = by_name.find(setting.variable);
    // A survey is no setting that a router keeps.
    if (!setting.is_settable && value != by_name.end() && !setting.key.ends_with("/survey")) {
      side.held[setting.key] = {.text = value->second};
    }
  }
  return side;
}

Side ReadSide(const std::string& word, const Options& options) {
  if (IsUrl(word)) {
    Router router(word, options);
    return SideOfRouter(&router, options.secrets);
  }
  if (IsDelivered(word)) {
    return SideOfNodes(Side::Kind::kProfile, word, NodesOfProfile(word));
  }
  const std::string text = ReadInput(word);
  switch (FirstOf(text)) {
    case '{':
      return SideOfArchiveText(word, OpenedArchive(text));
    case '<':
      return SideOfDocument(word, text);
    case '\0':
      throw Failure{ExitCode::kLocal, word + " is empty",
                    "name a router, an archive, a profile or a settings document"};
    default:
      return SideOfNodes(Side::Kind::kProfile, word, NodesOfProfileText(word, text));
  }
}

}  // namespace kioctl
