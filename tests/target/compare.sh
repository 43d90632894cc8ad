#!/usr/bin/env bash
# compare.sh MEASURED RECORDED: fails when a figure is more than 2 % above the recorded one, or when
# the two do not hold the same figures. Who makes the library larger records it in the same change,
# with record.sh.
set -euo pipefail
measured=$1 recorded=$2
if [[ ! -s $recorded ]]; then
  echo "nothing is recorded in $recorded" >&2
  exit 1
fi
awk '
  $1 == "symbol" { next }
  FNR == NR { recorded[$1] = $2; next }
  {
    seen[$1] = 1
    if (!($1 in recorded)) {
      print $1 ": " $2 ", not recorded"; bad = 1
    } else if ($2 > recorded[$1] * 1.02) {
      print $1 ": " $2 ", recorded " recorded[$1]; bad = 1
    } else {
      ++held
    }
  }
  END {
    for (name in recorded) {
      if (!(name in seen)) { print name ": recorded and not measured"; bad = 1 }
    }
    print held + 0 " figures within 2 % of the record"
    exit bad || held == 0
  }' "$recorded" "$measured"
