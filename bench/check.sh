#!/usr/bin/env bash
# check.sh [--counts]: builds the benchmarks (in build/bench), runs them and fails when a limit is
# missed. Figures and counts are left in build/bench/figures.json and build/bench/counts.txt.
#
# Times are compared as ratios within one run. Other work of the machine may still disturb a run, so
# one that misses a limit is repeated, at most twice. Counts of instructions repeat and are taken
# once. With --counts only what repeats is checked: instructions and size.
set -euo pipefail
cd "$(dirname "$0")/.."

times=yes
case ${1:-} in
  '') ;;
  --counts) times=no ;;
  *)
    echo "usage: bench/check.sh [--counts]" >&2
    exit 2
    ;;
esac

build=build/bench
log=$(cmake --preset bench 2>&1 && cmake --build --preset bench 2>&1) || {
  echo "$log" >&2
  exit 1
}

missed=()

run_times() {
  local runs=3 run
  for ((run = 1; run <= runs; ++run)); do
    if "$build/bench/kio_bench" --figures="$build/figures.json" > "$build/figures.txt" 2>&1; then
      break
    fi
    grep -E 'MISSED|cannot|differ|refuse' "$build/figures.txt" | sed "s/^/run $run: /" || true
    if ((run == runs)); then
      missed+=(times)
    fi
  done
  sed -n '/^figure /,$p' "$build/figures.txt"
}
if [[ $times == yes ]]; then
  run_times
fi

# count SCENARIO [SIZE]: prints the instructions of a scenario.
count() {
  valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file=/dev/null \
    "$build/bench/kio_counts" "$@" 2>&1 | sed -n 's/.*Collected : *//p'
}
# ratio NAME LIMIT: compares an exchange with its store calls; no limit with "-".
ratio() {
  local exchange calls
  exchange=$(count "exchange$1")
  calls=$(count "calls$1")
  awk -v name="exchange$1" -v a="$exchange" -v b="$calls" -v limit="$2" 'BEGIN {
    if (a <= 0 || b <= 0) { print name ": not counted"; exit 1 }
    missed = limit != "-" && a / b > limit
    printf "%-16s %9d instructions, its store calls %9d: %.3f x, limit %s%s\n",
      name, a, b, a / b, limit, missed ? " MISSED" : ""
    exit missed }'
}
# growth SCENARIO SMALL LARGE TIMES: compares two sizes, the larger of which may take 1.1 x TIMES the
# instructions of the smaller.
growth() {
  local small large
  small=$(count "$1" "$2")
  large=$(count "$1" "$3")
  awk -v name="$1 $2 to $3" -v a="$small" -v b="$large" -v times="$4" 'BEGIN {
    if (a <= 0 || b <= 0) { print name ": not counted"; exit 1 }
    growth = b / a / times
    missed = growth > 1.1
    printf "%-23s %9d to %9d instructions: %.3f of %d x, limit 1.1%s\n",
      name, a, b, growth, times, missed ? " MISSED" : ""
    exit missed }'
}
# wrong_key LIMIT: compares a wrong key, without the share of the host and the system, with a digest.
wrong_key() {
  local key host_share digest
  key=$(count wrong-key)
  host_share=$(count host-share)
  digest=$(count digest)
  awk -v key="$key" -v host_share="$host_share" -v digest="$digest" -v limit="$1" 'BEGIN {
    if (key <= 0 || host_share <= 0 || digest <= 0) { print "wrong key: not counted"; exit 1 }
    ratio = (key - host_share) / digest
    missed = ratio > limit
    printf "wrong key        %9d instructions without the host, a digest %9d: %.3f x, limit %s%s\n",
      key - host_share, digest, ratio, limit, missed ? " MISSED" : ""
    exit missed }'
}
{
  ratio "" 1.30 || missed+=(instructions)
  ratio -again - || missed+=(instructions)
  wrong_key 6 || missed+=(key)
  growth batch 16 256 16 || missed+=(growth)
  growth batch-lines 16 256 16 || missed+=(growth)
  for scenario in list-empty list-ranges list-entries; do
    growth "$scenario" 10 100 1 || missed+=(growth)
  done
} > "$build/counts.txt"
cat "$build/counts.txt"

tests/budget/size_test.sh "$build/src/libkioapp.so" 92160 || missed+=(size)

if ((${#missed[@]} > 0)); then
  echo "limits missed: ${missed[*]}" >&2
  exit 1
fi
echo "all limits held"
