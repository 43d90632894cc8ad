// The report as a page that needs nothing besides itself.
#include <algorithm>

#include "conform/outcome.h"

namespace kioctl::conform {
namespace {

constexpr char kHead[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Conformance report</title>
<style>
 body { font: 16px/1.4 sans-serif; margin: 2em auto; max-width: 60em; padding: 0 1em; }
 table { border-collapse: collapse; width: 100%; }
 td { border-top: 1px solid #ccc; padding: .3em .6em; vertical-align: top; }
 td:first-child { white-space: nowrap; font-family: monospace; }
 .passed { color: #06662a; } .failed { color: #a4001d; font-weight: bold; }
 .deviates { color: #7a4b00; } .skipped { color: #555; }
 pre { background: #f4f4f4; overflow-x: auto; padding: .6em; white-space: pre-wrap; }
</style>
</head>
<body>
)";

std::string HtmlText(const std::string& text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += static_cast<unsigned char>(c) < ' ' && c != '\n' ? '?' : c;
    }
  }
  return html;
}

std::string RowOf(const Outcome& outcome) {
  const std::string word = WordOf(outcome.verdict);
  std::string row = "<tr id=\"" + HtmlText(outcome.one->name) + "\"><td>" +
                    HtmlText(outcome.one->name) + "</td><td class=\"" + word + "\">" + word +
                    "</td><td>" + HtmlText(outcome.one->promise);
  if (!outcome.agreed.empty()) {
    row += "<br>Agreed deviation: " + HtmlText(outcome.agreed) +
           (outcome.verdict == Verdict::kPassed ? " (it no longer happens)" : "");
  }
  if (!outcome.why.empty()) {
    row += "<br><em>" + HtmlText(outcome.why) + "</em>";
  }
  if (!outcome.transcript.empty()) {
    row += "<details><summary>what was said</summary><pre>";
    for (const std::string& said : outcome.transcript) {
      row += HtmlText(said) + "\n";
    }
    row += "</pre></details>";
  }
  return row + "</td></tr>\n";
}

}  // namespace

std::string PageReport(const Run& run) {
  std::string page = kHead;
  page += "<h1>Conformance of " + HtmlText(run.router) + "</h1>\n<p>" + HtmlText(run.url) +
          ", by " + HtmlText(run.program) + ", " + HtmlText(run.order) + ": " + run.Summary() +
          ".</p>\n";
  if (!run.cut_short.empty()) {
    page += "<p class=\"failed\">Not all cases were run: " + HtmlText(run.cut_short) + "</p>\n";
  }
  // The groups in the order of their first cases.
  std::vector<std::string> groups;
  for (const Outcome& outcome : run.outcomes) {
    if (std::find(groups.begin(), groups.end(), outcome.group()) == groups.end()) {
      groups.push_back(outcome.group());
    }
  }
  for (const std::string& group : groups) {
    page += "<h2>" + HtmlText(group) + "</h2>\n<table>\n";
    for (const Outcome& outcome : run.outcomes) {
      page += outcome.group() == group ? RowOf(outcome) : "";
    }
    page += "</table>\n";
  }
  return page + "</body>\n</html>\n";
}

}  // namespace kioctl::conform
