#!/usr/bin/env bash
# nodes_test.sh SOURCE_DIR: fails when the path of a store node is written out in two places of the
# library, or of the host. What is used in several places is a constant.
set -euo pipefail
cd "$1"

# Text constants that look like the path of a node, one a line; comments do not count.
paths() {
  sed 's,//.*,,' "$@" | grep -oE '"/(sys|lan|uplink|runtime|zentrolinks|fwupgradeinfo|safetyvyr|wirelesssitesurvey)(/[^"]*)?"'
}
status=0
for room in src host; do
  mapfile -t files < <(find "$room" -name '*.h' -o -name '*.cc' | sort)
  found=$(paths "${files[@]}")
  if (($(wc -l <<<"$found") < 5)); then
    echo "$room: the paths of the nodes are not where this test looks for them"
    status=1
  fi
  while read -r path; do
    [[ -z $path ]] && continue
    echo "$room: $path stands in more than one place:"
    grep -nF "$path" "${files[@]}"
    status=1
  done < <(sort <<<"$found" | uniq -d)
done
exit "$status"
