#!/usr/bin/env bash
# run.sh [SEQUENCES [FIRST]]: plays random sequences of 200 steps on virtual routers and compares them
# with the model: half of them the same each time, half of them drawn by the commit; with FIRST those
# of the seeds from there on. A sequence that fails is printed as short as it gets: kept in corpus/, it
# is played by the tests. KIO_E2E_HOST names another kiohost than that of build/dev.
set -euo pipefail
cd "$(dirname "$0")/../../.."

sequences=${1:-100}
processes=$(nproc)
cmake/packages.sh test
cmake --preset dev > /dev/null
cmake --build --preset dev --target kiohost_sequences > /dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
half=$(((sequences + 1) / 2))
drawn=$((16#1$(git rev-parse HEAD 2> /dev/null | cut -c1-7 || true)))

# play COUNT FIRST PROCESS: this process's share of the seeds from FIRST on.
play() {
  KIO_SEQUENCES=$((($1 - $3 + processes - 1) / processes)) KIO_SEQUENCES_FIRST=$(($2 + $3)) \
    KIO_SEQUENCES_STRIDE=$processes build/dev/tests/proof/sequences/kiohost_sequences \
    --gtest_brief=1 --gtest_filter='SequencesTest.Random*'
}
pids=()
for ((i = 0; i < processes; ++i)); do
  {
    play "$half" "${2:-1}" "$i" &&
      play $((sequences - half)) $((${2:-$drawn} + (${2:+half} + 0))) "$i" ||
      echo failed >> "$work/failed"
  } > "$work/log.$i" 2>&1 &
  pids+=($!)
done
wait "${pids[@]}"
grep -hv '^count: ' "$work"/log.* || true
# counted NAME: the sum over all processes.
counted() { awk -F '\t' -v name="count: $1" '$1 == name { sum += $2 } END { print sum + 0 }' "$work"/log.*; }
printf 'figure: Sequences of 200 steps\t%s\n' "$(($(counted steps) / 200))"
printf 'figure: Requests, restarts and moves of the clock\t%s\n' "$(counted steps)"
printf 'figure: Faults that acted\t%s\n' "$(counted faults)"
printf 'figure: Ends by a power cut\t%s\n' "$(counted deaths)"
printf 'figure: Events compared\t%s\n' "$(counted events)"
[[ ! -e $work/failed ]]
