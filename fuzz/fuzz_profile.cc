// Profiles. The input is the files, each but the first behind a line "--- NAME". The first is
// called "profile". What is read is written and read again, and a store's limits hold for it.
#include <map>
#include <optional>

#include "input.h"
#include "node_path.h"
#include "profile.h"
#include "store.h"

namespace {

using Files = std::map<std::string, std::string>;

Files FilesOf(std::string_view input) {
  constexpr std::string_view kMark = "--- ";
  Files files;
  std::string* text = &files["profile"];
  while (!input.empty()) {
    const std::size_t size = std::min(input.find('\n'), input.size() - 1) + 1;
    const std::string_view line = input.substr(0, size);
    if (line.starts_with(kMark)) {
      text = &files[std::string(line.substr(kMark.size(), line.find('\n') - kMark.size()))];
    } else {
      text->append(line);
    }
    input.remove_prefix(size);
  }
  return files;
}

void Check(const std::vector<kiohost::Node>& nodes) {
  for (const kiohost::Node& node : nodes) {
    if (!kiohost::IsNodePath(node.path) || node.text.size() > kiohost::Store::kMaxTextLength ||
        node.text.find('\0') != std::string::npos) {
      kio::fuzz::Report("a profile gives what is no node");
    }
  }
  std::vector<kiohost::Node> again;
  if (!kiohost::ParseProfile(kiohost::FormatProfile(nodes), &again).ok() || again != nodes) {
    kio::fuzz::Report("a profile that was written reads differently");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Files files = FilesOf({reinterpret_cast<const char*>(data), size});
  std::vector<kiohost::Node> nodes;
  if (kiohost::ParseProfile(files.at("profile"), &nodes).ok()) {
    Check(nodes);
  }
  std::vector<kiohost::ProfileNode> placed;
  const auto text_of = [&files](const std::string& file) {
    const auto found = files.find(file);
    return found == files.end() ? std::nullopt : std::optional(found->second);
  };
  if (kiohost::ReadProfileOf(text_of, "profile", &placed).ok()) {
    Check(kiohost::PlainNodes(placed));
  }
  return 0;
}
