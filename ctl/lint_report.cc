#include "lint_report.h"

#include <set>

#include "version.h"

namespace kioctl {
namespace {

using nlohmann::json;

// A text of the document may be no UTF-8.
std::string Dumped(const json& value, int indent) {
  return value.dump(indent, ' ', false, json::error_handler_t::replace);
}

const char* LevelOf(const Finding& finding) { return finding.is_error ? "error" : "warning"; }

// The line of a finding. What is secret on it is hidden.
std::string LineOf(const std::string& document, const Finding& finding) {
  const size_t begin =
      finding.span.begin == 0 ? 0 : document.rfind('\n', finding.span.begin - 1) + 1;
  const size_t end = std::min(document.find('\n', finding.span.begin), document.size());
  std::string line = document.substr(begin, end - begin);
  if (finding.value == "********") {
    line.replace(finding.span.begin - begin, finding.span.length,
                 std::string(finding.span.length, '*'));
  }
  return line;
}

std::string TextOf(const std::string& file, const std::string& document, const Finding& finding,
                   bool colour) {
  const Place place = PlaceOf(document, finding.span.begin);
  const std::string bold = colour ? "\033[1m" : "";
  const std::string tone = colour ? (finding.is_error ? "\033[1;31m" : "\033[1;35m") : "";
  const std::string plain = colour ? "\033[0m" : "";
  std::string text = bold + file + ":" + std::to_string(place.line) + ":" +
                     std::to_string(place.column) + ": " + plain + tone + LevelOf(finding) + ": " +
                     plain + bold + Printable(finding.what) + plain + " [" + finding.id + "]\n";
  const std::string line = LineOf(document, finding);
  const size_t before = static_cast<size_t>(place.column) - 1;
  const size_t marks = std::min(finding.span.length, line.size() - std::min(before, line.size()));
  text += "  " + Printable(line) + "\n  " + std::string(before, ' ') + tone + "^" +
          std::string(marks > 1 ? marks - 1 : 0, '~') + plain + "\n";
  const auto add = [&text](const char* word, const std::string& what) {
    if (!what.empty()) {
      text.append("  ").append(word).append(": ").append(Printable(what)).append("\n");
    }
  };
  if (!finding.reported.empty() && finding.reported != finding.path) {
    add("note", "the device reports it as " + finding.reported);
  }
  if (!finding.rule.empty()) {
    add("note", finding.path + " takes " + finding.rule);
  }
  add("help", finding.help);
  return text;
}

json JsonOf(const std::string& file, const std::string& document, const Finding& finding) {
  const Place place = PlaceOf(document, finding.span.begin);
  json value = {{"file", file},
                {"line", place.line},
                {"column", place.column},
                {"length", finding.span.length},
                {"level", LevelOf(finding)},
                {"id", finding.id},
                {"what", finding.what},
                {"path", finding.path},
                {"reported", finding.reported},
                {"rule", finding.rule},
                {"value", finding.value},
                {"help", finding.help},
                {"fix", nullptr}};
  if (finding.fix) {
    const Place begin = PlaceOf(document, finding.fix->span.begin);
    value["fix"] = {{"line", begin.line},
                    {"column", begin.column},
                    {"length", finding.fix->span.length},
                    {"text", finding.fix->text}};
  }
  return value;
}

json RegionOf(const std::string& document, const Span& span) {
  const Place begin = PlaceOf(document, span.begin);
  const Place end = PlaceOf(document, span.begin + span.length);
  return {{"startLine", begin.line},
          {"startColumn", begin.column},
          {"endLine", end.line},
          {"endColumn", end.column}};
}

json SarifOf(const std::string& file, const std::string& document,
             const std::vector<Finding>& findings) {
  json results = json::array();
  std::set<std::string> ids;
  const json artifact = {{"uri", file}};
  for (const Finding& finding : findings) {
    ids.insert(finding.id);
    json result = {
        {"ruleId", finding.id},
        {"level", LevelOf(finding)},
        {"message", {{"text", finding.what + (finding.help.empty() ? "" : "; " + finding.help)}}},
        {"locations",
         {{{"physicalLocation",
            {{"artifactLocation", artifact}, {"region", RegionOf(document, finding.span)}}},
           {"logicalLocations", {{{"fullyQualifiedName", finding.path}}}}}}}};
    if (finding.fix) {
      result["fixes"] = {{{"artifactChanges",
                           {{{"artifactLocation", artifact},
                             {"replacements",
                              {{{"deletedRegion", RegionOf(document, finding.fix->span)},
                                {"insertedContent", {{"text", finding.fix->text}}}}}}}}}}};
    }
    results.push_back(result);
  }
  json rules = json::array();
  for (const std::string& id : ids) {
    rules.push_back({{"id", id}});
  }
  const json driver = {{"name", "kioctl lint"}, {"version", kVersionText}, {"rules", rules}};
  return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
          {"version", "2.1.0"},
          {"runs", {{{"tool", {{"driver", driver}}}, {"results", results}}}}};
}

// A text in an annotation.
std::string Annotated(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    safe += c == '%' ? "%25" : c == '\n' ? "%0A" : c == '\r' ? "%0D" : std::string(1, c);
  }
  return safe;
}

std::string AnnotationOf(const std::string& file, const std::string& document,
                         const Finding& finding) {
  const Place place = PlaceOf(document, finding.span.begin);
  return std::string("::") + LevelOf(finding) + " file=" + Annotated(file) +
         ",line=" + std::to_string(place.line) + ",col=" + std::to_string(place.column) +
         ",title=" + finding.id +
         "::" + Annotated(finding.what + (finding.help.empty() ? "" : "; " + finding.help)) + "\n";
}

}  // namespace

std::string LintReport(const std::string& form, const std::string& file,
                       const std::string& document, const std::vector<Finding>& findings,
                       bool colour) {
  constexpr int kIndent = 2;
  if (form == "sarif") {
    return Dumped(SarifOf(file, document, findings), kIndent) + "\n";
  }
  std::string report;
  for (const Finding& finding : findings) {
    if (form == "json") {
      report += Dumped(JsonOf(file, document, finding), -1) + "\n";
    } else if (form == "github") {
      report += AnnotationOf(file, document, finding);
    } else {
      report += TextOf(file, document, finding, colour);
    }
  }
  return report;
}

}  // namespace kioctl
