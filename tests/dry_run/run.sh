#!/usr/bin/env bash
# run.sh [SCENARIOS]: compares what follows a dry run with what happens without one, over 10,000
# random scenarios; the tests run some hundred of them.
set -euo pipefail
cd "$(dirname "$0")/../.."

scenarios=${1:-10000}
cmake/packages.sh test
cmake --preset dev > /dev/null
cmake --build --preset dev --target dry_run_tests > /dev/null
processes=$(nproc)
each=$(((scenarios + processes - 1) / processes))
pids=()
for ((i = 0; i < processes; ++i)); do
  KIO_DRY_RUN_SCENARIOS=$each KIO_DRY_RUN_FIRST=$((1 + i * each)) \
    build/dev/tests/dry_run/dry_run_tests --gtest_brief=1 --gtest_filter='*WhatFollows*' &
  pids+=($!)
done
status=0
for pid in "${pids[@]}"; do
  wait "$pid" || status=1
done
((status == 0)) && echo "$((processes * each)) scenarios: nothing differs after a dry run"
exit "$status"
