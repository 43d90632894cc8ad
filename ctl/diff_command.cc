// diff: two of router, archive, profile and document, setting by setting.
#include <algorithm>

#include "commands.h"
#include "compare.h"
#include "side_reader.h"

namespace kioctl {
namespace {

using nlohmann::json;
using Part = SettingDifference::Part;

json PartAsJson(const Part& part) { return part.text ? json(*part.text) : json(); }

json AsJson(const SettingDifference& difference) {
  json value = {{"kind", WordOf(difference.kind)},
                {"setting", difference.name},
                {"a", PartAsJson(difference.a)},
                {"b", PartAsJson(difference.b)}};
  for (const auto& [member, text] :
       {std::pair{"variable", &difference.variable}, std::pair{"node", &difference.node},
        std::pair{"meaning", &difference.meaning}, std::pair{"noteOfA", &difference.a.note},
        std::pair{"noteOfB", &difference.b.note}}) {
    if (!text->empty()) {
      value[member] = *text;
    }
  }
  return value;
}

json AsJson(const Side& side) { return {{"kind", WordOf(side.kind)}, {"name", side.name}}; }

// The part of a long text where it begins to be another one than `other`.
std::string Window(const std::string& text, const std::string& other, size_t width) {
  if (width == 0 || text.size() <= width) {
    return text;
  }
  const auto at = static_cast<size_t>(
      std::mismatch(text.begin(), text.end(), other.begin(), other.end()).first - text.begin());
  constexpr size_t kBefore = 4;
  constexpr size_t kMarks = 2;
  if (at + kBefore < width) {
    return CutTo(text, width);
  }
  size_t begin = std::min(at - kBefore, text.size() - (width - kMarks));
  while (begin > 0 && IsContinuation(text[begin])) {
    --begin;
  }
  return CutTo("…" + text.substr(begin), width);
}

std::string CellOf(const Part& part, const Part& other, size_t width) {
  if (part.text.value_or("").empty()) {
    return "(" + (part.note.empty() ? "empty" : part.note) + ")";
  }
  const std::string text = Window(*part.text, other.text.value_or(""), width);
  return part.note.empty() ? text : text + " (" + part.note + ")";
}

void ShowTable(const Output& out, const Side& a, const Side& b,
               const std::vector<SettingDifference>& differences) {
  constexpr size_t kGaps = 6;
  constexpr size_t kLeast = 16;
  constexpr size_t kKinds = std::string_view("secret-differs").size();
  size_t longest = 0;
  for (const SettingDifference& difference : differences) {
    longest = std::max(longest, difference.name.size());
  }
  // What the names leave is shared. A pipe gets all of a text.
  const size_t taken = kKinds + longest + kGaps;
  const size_t width = out.width() == 0                   ? 0
                       : out.width() > taken + 2 * kLeast ? (out.width() - taken) / 2
                                                          : kLeast;
  std::vector<Row> rows;
  std::vector<Tone> tones;
  for (const SettingDifference& difference : differences) {
    rows.push_back({WordOf(difference.kind), difference.name,
                    CellOf(difference.a, difference.b, width),
                    CellOf(difference.b, difference.a, width)});
    tones.push_back(difference.Counts() ? Tone::kPlain : Tone::kQuiet);
  }
  if (!rows.empty()) {
    out.Table({"KIND", "SETTING", Window(a.name, b.name, width), Window(b.name, a.name, width)},
              rows, tones);
  }
}

std::string CountOf(const std::vector<SettingDifference>& differences, SettingDifference::Kind kind,
                    const std::string& what) {
  const auto count = std::count_if(
      differences.begin(), differences.end(),
      [kind](const SettingDifference& difference) { return difference.kind == kind; });
  return count == 0 ? "" : "; " + std::to_string(count) + " " + what;
}

std::string SumOf(const std::vector<SettingDifference>& differences) {
  const auto count = std::count_if(differences.begin(), differences.end(),
                                   [](const SettingDifference& one) { return one.Counts(); });
  return (count == 0   ? "no setting differs"
          : count == 1 ? "1 setting differs"
                       : std::to_string(count) + " settings differ") +
         CountOf(differences, SettingDifference::Kind::kOneSide, "on one side only") +
         CountOf(differences, SettingDifference::Kind::kNotCompared,
                 "not compared, as secrets are not told (--secrets)");
}

// What brings one side to the other.
std::string WayBetween(const Side& a, const Side& b) {
  const Side& router = a.kind == Side::Kind::kRouter ? a : b;
  const Side& other = &router == &a ? b : a;
  const bool is_archive = other.kind == Side::Kind::kArchive;
  if (router.kind != Side::Kind::kRouter || (!is_archive && !other.IsDocument())) {
    return "kioctl diff --json tells the variables and nodes, and what they are";
  }
  return "kioctl --router " + router.name + (is_archive ? " restore " : " send ") + other.name +
         " --dry-run tells what it would change there";
}

}  // namespace

void RunDiff(Context* context) {
  const Options& options = *context->options;
  const Output& out = *context->out;
  if (!options.routers.empty()) {
    throw Failure{ExitCode::kUsage, "diff takes no --router",
                  "name the router by its URL as one of the two: kioctl diff URL FILE"};
  }
  if (options.operand == "-" && options.value == "-") {
    throw Failure{ExitCode::kUsage, "both sides are standard input", "name a file for one of them"};
  }
  const Side a = ReadSide(options.operand, options);
  const Side b = ReadSide(*options.value, options);
  const std::vector<SettingDifference> differences = Compare(a, b);
  const bool differs = std::any_of(differences.begin(), differences.end(),
                                   [](const SettingDifference& one) { return one.Counts(); });
  json list = json::array();
  for (const SettingDifference& difference : differences) {
    list.push_back(AsJson(difference));
  }
  out.Json({{"same", !differs}, {"a", AsJson(a)}, {"b", AsJson(b)}, {"differences", list}});
  ShowTable(out, a, b, differences);
  const std::string sum = SumOf(differences);
  if (differs) {
    throw Failure{ExitCode::kDifferent, sum, WayBetween(a, b), json::object(), true};
  }
  if (!out.json()) {
    out.Note(sum);
  }
}

}  // namespace kioctl
