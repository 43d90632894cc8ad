#!/bin/bash
# Logs in with examples/login.sh, by the real clock. Usage: login_example_test.sh KIOHOST SOURCE_DIR
set -euo pipefail

kiohost=$1
source_dir=$2
work=$(mktemp -d /tmp/kio.XXXXXX)
host_pid=
cleanup() {
  if [[ -n $host_pid ]]; then
    kill "$host_pid" 2>/dev/null || true
    wait "$host_pid" || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT

start() {
  : >"$work/out"
  "$kiohost" --store "$work/store.db" --temp-dir "$work" --script-dir "$source_dir/host/scripts" \
    --port 0 "$@" >"$work/out" &
  host_pid=$!
  ROUTER=
  for _ in {1..200}; do
    ROUTER=$(sed -n 's|^listening on \(http://.*\)/$|\1|p' "$work/out")
    [[ -z $ROUTER ]] || return 0
    sleep 0.05
  done
  echo "the host does not listen"
  return 1
}
stop() {
  kill "$host_pid"
  wait "$host_pid"
  host_pid=
}

status=0
# expect WHAT WANTED GOT
expect() {
  if [[ $2 != "$3" ]]; then
    echo "$1: expected '$2', got '$3'"
    status=1
  fi
}
login() { KIO_PASSWORD=$1 "$source_dir/examples/login.sh" "$ROUTER" && echo "exit 0"; }
code() { curl -sS -o /dev/null -w '%{http_code}' "$ROUTER/vars/rss_DeviceName"; }

start
expect 'before' 401 "$(code)"
expect 'a wrong password' 'not the key of this address now' "$(login wrong 2>/dev/null || true)"
expect 'after it' 401 "$(code)"
expect 'the password' $'logged in\nexit 0' "$(login change-me-soon)"
expect 'after it' 200 "$(code)"
curl -sS -X POST -o /dev/null "$ROUTER/logout"
expect 'after the logout' 401 "$(code)"
stop

# Of a long password 63 bytes count, and a percent sign is one.
# shellcheck disable=SC2016
long='%s%d long $(password) "of" more than sixty-three bytes, ä and ö among them'
sed "s|^/sys/user:1/password = .*|/sys/user:1/password = LONG|" \
  "$source_dir/host/profiles/dual-band-router.profile" >"$work/long.profile"
awk -v long="${long//\"/\\\\\"}" '{
  at = index($0, "LONG"); print at ? substr($0, 1, at - 1) "\"" long "\"" : $0 }' \
  "$work/long.profile" >"$work/test.profile"
start --profile "$work/test.profile" --factory-reset
expect 'the password as stored' "$long" \
  "$("$kiohost" --store "$work/store.db" --get /sys/user:1/password)"
expect 'a long password' $'logged in\nexit 0' "$(login "$long")"
stop
((status == 0))
