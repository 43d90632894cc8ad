// lint and schema: what a document must be, without a change anywhere.
#include <algorithm>

#include "commands.h"
#include "files.h"
#include "lint.h"
#include "lint_report.h"
#include "schema.h"

namespace kioctl {
namespace {

// The document with all fixes but those that reach into another one.
std::string Fixed(std::string document, const std::vector<Finding>& findings, int* count) {
  std::vector<Edit> edits;
  for (const Finding& finding : findings) {
    if (finding.fix) {
      edits.push_back(*finding.fix);
    }
  }
  std::stable_sort(edits.begin(), edits.end(), [](const Edit& one, const Edit& other) {
    return one.span.begin > other.span.begin;
  });
  size_t end = document.size() + 1;
  for (const Edit& edit : edits) {
    if (edit.span.begin + edit.span.length <= end) {
      document = Apply(document, edit);
      end = edit.span.begin;
      ++*count;
    }
  }
  return document;
}

std::vector<Finding> LintFor(Context* context, const std::string& document) {
  if (context->router != nullptr) {
    RouterJudge judge(context->router);
    return Lint(document, &judge);
  }
  LocalJudge judge(context->options->profile);
  return Lint(document, &judge);
}

}  // namespace

void RunLint(Context* context) {
  const Options& options = *context->options;
  const Output& out = *context->out;
  const std::string document = ReadInput(options.operand);
  std::string checked = document;
  std::vector<Finding> findings = LintFor(context, checked);
  if (options.fix) {
    // Behind a tag that is renamed there may be more. Of a broken document one change may undo
    // another.
    constexpr int kMostRounds = 32;
    int count = 0;
    int before = -1;
    for (int round = 0; before < count && round < kMostRounds; ++round) {
      before = count;
      checked = Fixed(checked, findings, &count);
      findings = LintFor(context, checked);
    }
    WriteOutput(options.operand, checked);
    out.Note(std::to_string(count) + " fixed");
  }
  const std::string form = out.json() ? "json" : options.form;
  if (!options.fix || options.operand != "-") {
    out.Raw(LintReport(form, options.operand, checked, findings, out.colour() && form == "text"));
  }
  const auto errors = std::count_if(findings.begin(), findings.end(),
                                    [](const Finding& finding) { return finding.is_error; });
  const std::string sum = std::to_string(errors) + " errors, " +
                          std::to_string(findings.size() - static_cast<size_t>(errors)) +
                          " warnings";
  if (errors > 0) {
    throw Failure{ExitCode::kRefused, options.operand + ": " + sum,
                  "mend the errors; kioctl lint --fix does it where one change is likely",
                  nlohmann::json::object(), true};
  }
  if (form == "text") {
    out.Note(options.operand + ": " + sum);
  }
}

void RunSchema(Context* context) {
  const Options& options = *context->options;
  context->out->Raw(options.operand == "json"
                        ? SchemaAsJson(options.version, options.firmware_list)
                        : SchemaAsRelaxNg(options.version, options.firmware_list));
}

}  // namespace kioctl
