#!/bin/bash
# Runs the examples of a page of docs/: each `sh` block against a host with factory settings, and
# compares its output with the `text` block that follows.
# Usage: http_doc_test.sh KIOHOST SOURCE_DIR [PAGE LEAST OPTION...], with the page (http.md), how many
# examples it has at least (10), and options of the host.
set -euo pipefail

kiohost=$1
source_dir=$2
page=${3-http.md}
least=${4-10}
shift $(($# < 4 ? $# : 4))
work=$(mktemp -d "${TMPDIR:-/tmp}/k.XXXXXX")
host_pid=
cleanup() {
  if [[ -n $host_pid ]]; then
    kill "$host_pid" 2>/dev/null || true
    wait "$host_pid" || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT

ln -s "$source_dir/host/scripts" "$work/scripts"
: >"$work/out"
"$kiohost" --store "$work/store.db" --temp-dir "$work" --script-dir "$work/scripts" --port 0 \
  "$@" >"$work/out" &
host_pid=$!
ROUTER=
for _ in {1..200}; do
  ROUTER=$(sed -n 's|^listening on \(http://.*\)/$|\1|p' "$work/out")
  [[ -z $ROUTER ]] || break
  sleep 0.05
done
[[ -n $ROUTER ]] || { echo "the host does not listen"; exit 1; }
CONTROL=$(sed -n 's|^control port on ||p' "$work/out")
export ROUTER CONTROL

# Writes the blocks as files 1.sh, 1.text, 2.sh, 2.text, ...
awk -v dir="$work" '
  /^```sh$/   { file = dir "/" ++count ".sh"; next }
  /^```text$/ { file = dir "/" count ".text"; next }
  /^```$/     { file = ""; next }
  file != ""  { print > file }' "$source_dir/docs/$page"

# What is another in each run.
same_uptime() {
  sed 's/"uptime": [0-9][0-9]*/"uptime": N/; s/"\(bootId\|id\)": "[0-9a-f]*"/"\1": "N"/
       s/^\(Kio-Apply-Id:\) [0-9a-f]*/\1 N/
       s/"uptime":[0-9]*/"uptime":N/; s/\(^id: \|"id":"\|"next":"\)[0-9a-f]*-/\1N-/g'
}

cd "$source_dir"
examples=0
for _ in "$work"/*.sh; do
  examples=$((examples + 1))
done
((examples >= least)) || { echo "found $examples examples only"; exit 1; }
for ((i = 1; i <= examples; ++i)); do
  echo "example $i: $(head -n 1 "$work/$i.sh")"
  bash -euo pipefail "$work/$i.sh" >"$work/$i.got"
  diff <(same_uptime <"$work/$i.text") <(same_uptime <"$work/$i.got")
done
echo "$examples examples passed"
