#!/usr/bin/env bash
# compare.sh MEASURED RECORDED: fails when a figure is more than 0.2 % off the recorded one, or when the
# two do not hold the same figures. All of them are counted, and repeat exactly.
set -euo pipefail
measured=$1 recorded=$2
stale='The record is stale: tests/target/record.sh measures all targets and writes it anew.'
if [[ ! -s $recorded ]]; then
  echo "nothing is recorded in $recorded" >&2
  echo "$stale" >&2
  exit 1
fi
awk -v stale="$stale" '
  $1 == "symbol" { next }
  FNR == NR { recorded[$1] = $2; next }
  {
    seen[$1] = 1
    if (!($1 in recorded)) {
      print $1 ": " $2 ", not recorded"; bad = 1
    } else if (($2 - recorded[$1]) ^ 2 > (recorded[$1] * 0.002) ^ 2) {
      print $1 ": " $2 ", recorded " recorded[$1]; bad = 1
    } else {
      ++held
    }
  }
  END {
    for (name in recorded) {
      if (!(name in seen)) { print name ": recorded and not measured"; bad = 1 }
    }
    print held + 0 " figures within 0.2 % of the record"
    if (bad || held == 0) {
      print stale
      exit 1
    }
  }' "$recorded" "$measured"
