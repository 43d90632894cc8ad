#!/usr/bin/env bash
# run_test.sh SOURCE_DIR: tests/proof/run over small steps: what it prints, and when it fails.
# shellcheck disable=SC2016  # other shells expand what stands in single quotes
# shellcheck source=tests/scripts/check.sh
. "$(dirname "$0")/../scripts/check.sh"
mkdir -p "$work/tree/tests/proof/figures" "$work/tree/tests/proof/topics"
cp "$source_dir/tests/proof/run" "$work/tree/tests/proof/"
cd "$work/tree"
printf '#!/bin/sh\nprintf "some words\\nfigure: Lines\\t%%s\\nfigure: Drawn\\t17\\n" "$1"\n' > count
printf '#!/bin/sh\necho "it broke"\nexit 3\n' > broken
chmod +x count broken
printf '# Words.\ncounts\t./count 12\n' > tests/proof/steps

# figures ROW...: records the figures of the topic.
figures() { printf '%b\n' "$@" > tests/proof/figures/counts.tsv; }
# expect_failure WHAT TEXT: the run fails and says the text.
expect_failure() {
  run tests/proof/run
  expect "exit code: $1" 1 "$code"
  expect_in "$1" "$2" "$work/said"
}

figures 'Lines\t12\texact' 'Drawn\t4\tdrawn' 'Hours\t1\tby hand'
run tests/proof/run
expect 'exit code' 0 "$code"
expect_in 'the figures' '    Lines: 12
    Drawn: 17' "$work/said"
run tests/proof/run counts
expect 'exit code of a topic' 0 "$code"
run tests/proof/run other
expect 'exit code without such a topic' 2 "$code"

figures 'Lines\t13\texact' 'Drawn\t4\tdrawn' 'Hours\t1\tby hand'
expect_failure 'another value' 'Lines: recorded 13, now 12'
figures 'Lines\t12\texact' 'Drawn\t4\tby hand' 'Hours\t1\tby hand'
expect_failure 'a figure that a step prints' 'not recorded as a figure of a step: Drawn (17)'
figures 'Lines\t12\texact' 'Drawn\t4\tdrawn' 'Hours\t1\tdrawn'
expect_failure 'a figure that no step prints' 'recorded, and printed by no step: Hours'
figures 'Lines\t12\texact' 'Drawn\t4\tdrawn' 'Hours\t1\tsometimes'
expect_failure 'a kind that is none' 'no kind of figure in "Hours'

# What runs beside the others begins first, and is waited for.
printf '#!/bin/sh\nsleep 0.5\ntouch waited\nprintf "figure: Waits\\t1\\n"\nexit ${CODE:-0}\n' > waits
printf '#!/bin/sh\nexit $(test ! -e waited)\n' > quick
chmod +x waits quick
printf 'Waits\t1\texact\n' > tests/proof/figures/beside.tsv
printf 'beside\t./quick\nbeside\t./waits &\n' >> tests/proof/steps
figures 'Lines\t12\texact' 'Drawn\t4\tdrawn' 'Hours\t1\tby hand'
run tests/proof/run
expect 'exit code with a step beside the others' 0 "$code"
expect_in 'its figure' '    Waits: 1
  ok     beside' "$work/said"
CODE=1 expect_failure 'a step beside the others that fails' 'failed: ./waits &'

figures 'Lines\t12\texact' 'Drawn\t4\tdrawn' 'Hours\t1\tby hand'
printf 'counts\t./broken\n' >> tests/proof/steps
expect_failure 'a step that fails' 'it broke'
expect_in 'its name' 'failed: ./broken' "$work/said"
exit $((failures > 0))
