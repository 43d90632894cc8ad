#!/usr/bin/env bash
# Writes what programs print into a page; see usage below.
set -euo pipefail
export LC_ALL=C
cd "$(dirname "$0")/.."

usage() {
  cat << 'END'
usage: tools/captures.sh KIOCTL KIOHOST [--check]

Runs the commands that README.md shows between lines such as <!-- capture: lint -->, and puts there what
they print now. With --check it changes nothing, and tells by its exit code and a comparison whether all
of it is as shown.

Ids are replaced by fixed ones, and so are the seconds that have passed. The router has a clock of its own,
which stands still until it is moved.
END
}
if (($# < 2 || $# > 3)) || [[ $1 == -* || ${3:---check} != --check ]]; then
  usage >&2
  exit 2
fi
kioctl=$(realpath "$1")
kiohost=$(realpath "$2")
page=README.md

root=${TMPDIR:-/tmp}
# The library's shell commands hold the path.
((${#root} < 12)) || root=/tmp
work=$(mktemp -d "$root/k.XXXXXX")
host_pid=
cleanup() {
  if [[ -n $host_pid ]]; then
    kill "$host_pid" 2> /dev/null || true
    wait "$host_pid" 2> /dev/null || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# until_true COMMAND...: waits until a command succeeds.
until_true() {
  local left=1500
  until "$@" > /dev/null 2>&1; do
    ((left-- > 0)) || {
      printf 'tools/captures.sh: nothing came of: %s\n' "$*" >&2
      exit 1
    }
    sleep 0.02
  done
}

start_host() {
  "$kiohost" --store "$work/store.db" --temp-dir "$work" --script-dir host/scripts --port 0 \
    --control 0 --clock=manual --real-waits > "$work/host" 2>&1 &
  host_pid=$!
  until_true grep -q '^listening on ' "$work/host"
  KIO_ROUTER=$(sed -n 's|^listening on \(.*\)/$|\1|p' "$work/host")
  control=$(sed -n 's/^control port on //p' "$work/host")
  export KIO_ROUTER KIO_PASSWORD=change-me-soon
}

# What is another one each time.
fixed() {
  sed -E -e 's/\b[0-9a-f]{32}\b/3f0c5a7e9b1d2c4f6a8e0b1c3d5f7a9b/g' \
    -e 's/\b[0-9a-f]{16}\b/8f2c1d7a5e3b9046/g' -e 's/\([0-9]+ s of /(0 s of /'
}

# A prompt and a command line, as they are shown.
shown() { printf '$ %s\n' "$*"; }

capture_lint() {
  shown 'sed "s/WPA2/WPA22/; s/192.0.2.77/192.0.2.300/" host/demo/change.xml > faulty.xml'
  sed 's/WPA2/WPA22/; s/192.0.2.77/192.0.2.300/' host/demo/change.xml > "$work/faulty.xml"
  shown kioctl lint faulty.xml
  (cd "$work" && "$kioctl" lint faulty.xml 2>&1) || true
}

capture_wait() {
  local id boot
  shown kioctl send host/demo/change.xml
  "$kioctl" send host/demo/change.xml > "$work/sent" 2>&1
  cat "$work/sent"
  id=$(sed -nE 's/.*--apply ([0-9a-f]+).*/\1/p' "$work/sent")
  boot=$(sed -nE 's/.*--boot ([0-9a-f]+).*/\1/p' "$work/sent")
  shown kioctl wait --early --apply "$id" --boot "$boot" --for 35
  # From here on the router is away, until its clock has moved.
  until_true bash -c "! '$kioctl' device"
  "$kioctl" wait --early --apply "$id" --boot "$boot" --for 35 > "$work/waited" 2>&1 &
  local waits=$!
  until_true grep -q away "$work/waited"
  curl -sS -o /dev/null -d '{"advance":35}' "$control/clock"
  wait "$waits" || true
  cat "$work/waited"
}

capture_conform() {
  shown "kioctl conform --yes --form text waits 'login.*-key-*'"
  # Between commits the clock moves: the router is as often away as it has promised.
  "$kioctl" conform --yes --form text --control "$control" waits 'login.*-key-*' 2>&1 |
    sed -E -e 's|http://127.0.0.1:[0-9]+|http://192.168.1.1:8080|' -e '/^  the clock of/d' || true
}

start_host
while read -r name; do
  "capture_$name" < /dev/null | fixed > "$work/$name.capture"
done < <(sed -nE 's/^<!-- capture: ([a-z]+) -->$/\1/p' "$page")

# The block behind a mark, with other content.
awk -v folder="$work" '
  /^<!-- capture: [a-z]+ -->$/ {
    file = folder "/" $3 ".capture"
    print
    print "```text"
    while ((getline line < file) > 0) print line
    print "```"
    skips = 1
    next
  }
  skips && /^```$/ { skips = 0; next }
  !skips { print }
' "$page" > "$work/page"

if [[ ${3:-} == --check ]]; then
  diff -u "$page" "$work/page" || {
    printf '%s shows something else than is printed now: run tools/captures.sh\n' "$page" >&2
    exit 1
  }
else
  cat "$work/page" > "$page"
fi
