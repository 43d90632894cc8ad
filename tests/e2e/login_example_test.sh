#!/bin/bash
# Logs in with examples/login.sh, by the real clock but for the uptime of old events.
# Usage: login_example_test.sh KIOHOST SOURCE_DIR FAKE_UPTIME
set -euo pipefail

kiohost=$1
source_dir=$2
fake_uptime=$3
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

# Events of two hours ago, and a name that looks like an uptime. The host's uptime is a file's.
sed -e '$ a /lan/wireless2.4:1/channelusing = 11' \
  -e 's|^/sys/friendlyname = .*|/sys/friendlyname = "x\\"uptime\\": 5, [{\\\\"|' \
  "$source_dir/host/profiles/dual-band-router.profile" >"$work/events.profile"
export KIO_TEST_UPTIME=$work/uptime
uptime() {
  echo "$1" >"$work/uptime.new"
  mv "$work/uptime.new" "$work/uptime"
}
uptime 3000
# A sanitizer wants to be loaded first.
export LD_PRELOAD=$fake_uptime ASAN_OPTIONS=verify_asan_link_order=0
start --profile "$work/events.profile" --factory-reset
unset LD_PRELOAD
for _ in {1..200}; do
  ! grep -q '^event' "$work/out" || break
  sleep 0.05
done
uptime 10200
expect 'the name, and an event of old' '[10200,"x\"uptime\": 5, [{\\",3000]' \
  "$(curl -sS "$ROUTER/device" | jq -c '[.uptime, .name, .events[0].uptime]')"
expect 'the password, with events' $'logged in\nexit 0' "$(login change-me-soon)"
stop

# Whatever else a router may say of itself. A curl of the test's own gives that answer, and shows
# what is sent to it.
mkdir "$work/bin"
cat >"$work/bin/curl" <<'END'
#!/bin/bash
if [[ $* == */device ]]; then
  printf '%s\n192.0.2.7' "$DEVICE"
else
  cat
fi
END
chmod +x "$work/bin/curl"
# key DEVICE: the key that the example makes of an answer.
key() {
  DEVICE=$1 KIO_PASSWORD=change-me-soon PATH=$work/bin:$PATH \
    "$source_dir/examples/login.sh" http://router 2>/dev/null || echo none
}
wanted=kioAppKey=:$(printf '%s' "$((5127 / 20))192.0.2.7adminchange-me-soon" | md5sum | cut -c 1-32)
while read -r device; do
  expect "$device" "$wanted" "$(key "$device")"
done <<'END'
{"uptime": 5127}
{"uptime":5127,"events":[]}
{"events": [{"uptime": 5, "text": "x"}, {"uptime": 9, "text": "y"}], "uptime": 5127}
{"uptime": 5127, "events": [{"uptime": 5, "text": "]}, \"uptime\": 7, {["}], "name": "y"}
{"name": "\\\\", "uptime" : 5127 , "radio": {"uptime": 5, "list": [[1], {"uptime": 8}]}}
{"name": "}\\\"uptime\": 5, \\", "model": "uptime", "on": true, "uptime": 5127, "up": null}
{"text": "u5,", "name": "{\"uptime\": 5}", "uptime": 5127, "a": "\u0022uptime\u0022: 5,"}
END
expect 'an answer on several lines' "$wanted" "$(key $'{\n "events": [\n ],\n\t"uptime":\n 5127\n}\r\n')"
for device in '' 'ok' '{"name": "\"uptime\": 5,"}' '{"events": [{"uptime": 5}]}' '{"uptime": "5"}'; do
  expect "no router: $device" none "$(key "$device")"
done
((status == 0))
