// The findings of lint in the forms that people and programs read.
#ifndef CTL_LINT_REPORT_H
#define CTL_LINT_REPORT_H

#include <string>
#include <vector>

#include "lint.h"
#include "output.h"

namespace kioctl {

// "text": as a compiler does, with the line and a caret; "json": an object a line; "sarif":
// SARIF 2.1; "github": annotations of a workflow.
std::string LintReport(const std::string& form, const std::string& file,
                       const std::string& document, const std::vector<Finding>& findings,
                       bool colour);

}  // namespace kioctl

#endif  // CTL_LINT_REPORT_H
