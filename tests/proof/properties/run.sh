#!/usr/bin/env bash
# run.sh [CASES [FIRST]]: looks whether the properties hold of random devices and documents, from the
# seed FIRST on. Without it they are the same cases each time, and their figures, too.
set -euo pipefail
cd "$(dirname "$0")/../../.."

cases=${1:-100000}
first=${2:-1}
processes=$(nproc)
cmake/packages.sh test
cmake --preset dev > /dev/null
cmake --build --preset dev --target properties_test > /dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pids=()
for ((i = 0; i < processes; ++i)); do
  begin=$((cases * i / processes))
  KIO_PROPERTIES=$((cases * (i + 1) / processes - begin)) KIO_PROPERTIES_FIRST=$((first + begin)) \
    build/dev/tests/proof/properties/properties_test --gtest_brief=1 > "$work/log.$i" 2>&1 &
  pids+=($!)
done
status=0
for pid in "${pids[@]}"; do
  wait "$pid" || status=1
done
grep -hv '^count: ' "$work"/log.* || true
awk -F '\t' 'sub(/^count: /, "", $1) { sum[$1] += $2 }
  END { for (what in sum) printf "figure: %s\t%d\n", toupper(substr(what, 1, 1)) substr(what, 2), sum[what] }' \
  "$work"/log.* | LC_ALL=C sort
exit "$status"
