#include "delivered.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "embedded.h"
#include "failure.h"
#include "files.h"
#include "profile.h"

namespace kioctl {
namespace {

constexpr char kDefaultProfile[] = "dual-band-router";
constexpr char kEnding[] = ".profile";

// The text of a delivered profile by the name of its file.
std::optional<std::string> DeliveredText(const std::string& file) {
  const EmbeddedFile* const end = kProfiles + kProfileCount;
  const EmbeddedFile* const found = std::find_if(
      kProfiles, end, [&file](const EmbeddedFile& profile) { return file == profile.name; });
  return found == end ? std::nullopt : std::optional<std::string>(found->text);
}

Nodes Read(const kiohost::ProfileFiles& files, const std::string& file) {
  std::vector<kiohost::ProfileNode> read;
  const kiohost::Status status = kiohost::ReadProfileOf(files, file, &read);
  if (!status.ok()) {
    throw Failure{ExitCode::kLocal, status.reason(),
                  "name a delivered profile, such as dual-band-router, or a file of that form"};
  }
  Nodes nodes;
  for (const kiohost::ProfileNode& node : read) {
    nodes[LowerCase(node.node.path)] = node.node.text;
  }
  return nodes;
}

}  // namespace

bool IsDelivered(const std::string& name) { return DeliveredText(name + kEnding).has_value(); }

Nodes NodesOfProfile(const std::string& name) {
  const std::string wanted = name.empty() ? kDefaultProfile : name;
  if (IsDelivered(wanted)) {
    return Read(DeliveredText, wanted + kEnding);
  }
  return NodesOfProfileText(wanted, ReadInput(wanted));
}

Nodes NodesOfProfileText(const std::string& file, const std::string& text) {
  return Read(
      [&](const std::string& name) -> std::optional<std::string> {
        return name == file ? text : ReadInput(name);
      },
      file);
}

}  // namespace kioctl
