#!/usr/bin/env bash
# demo_test.sh SOURCE_DIR PROGRAM_DIR: ./demo, twice at once and beside a firmware server that is
# asked all the while, and ended before its end.
# shellcheck source=tests/scripts/check.sh
. "$(dirname "$0")/check.sh"
export KIO_DEMO_PROGRAMS=$2
demo=$source_dir/demo

run "$demo" --help
expect 'exit code of --help' 0 "$code"
expect_in '--help' 'usage: ./demo [--serve]' "$work/said"
for arguments in '--server' '--serve more' 'help'; do
  # shellcheck disable=SC2086  # two of them are meant
  run "$demo" $arguments
  expect "exit code of $arguments" 2 "$code"
  expect_in "$arguments" "unknown argument '$arguments'" "$work/said"
done

# Another router's download of the same file goes on meanwhile.
mkdir -p "$work/www/fw"
head -c 100000000 /dev/zero > "$work/www/fw/DR2400_FW1.0.8_0312.bin"
: > "$work/server"
"$KIO_DEMO_PROGRAMS/firmware_server" "$work/www" 50000 > "$work/server" &
server=$!
fetch=
trap 'kill $server $fetch 2> /dev/null || true; rm -rf "$work"' EXIT
proxy=
for _ in {1..600}; do
  proxy=$(sed -n 's|^listening on \(http://.*\)/$|\1|p' "$work/server")
  [[ -z $proxy ]] || break
  sleep 0.1
done
http_proxy=$proxy wget -q -t 1 -O "$work/fetched" \
  http://firmware.kioapp.example/fw/DR2400_FW1.0.8_0312.bin &
fetch=$!

pids=()
for number in 1 2; do
  "$demo" > "$work/said.$number" 2>&1 < /dev/null &
  pids+=($!)
done
for number in 1 2; do
  code=0
  wait "${pids[number - 1]}" || code=$?
  expect "exit code of demo $number" 0 "$code"
  expect_in "demo $number" '== Done' "$work/said.$number"
  expect_in "demo $number" 'event firmware written: DR2400_FW1.0.8_0312.bin, 1572928 bytes' \
    "$work/said.$number"
done
expect 'the other download' alive "$(kill -0 "$fetch" 2> /dev/null && echo alive)"
kill "$fetch" "$server"
wait "$server"
expect 'the exit code of the firmware server' 0 "$?"

# Ended, it leaves neither files nor a program. What it says ends when no program of it is left.
exec 5< <(exec "$demo" --serve 2>&1)
pid=$!
while read -r -u 5 line && [[ $line != "The host runs until"* ]]; do
  :
done
expect 'the last line' 'The host runs until' "${line:0:19}"
kill -TERM "$pid"
cat <&5 > "$work/rest"
code=0
wait "$pid" || code=$?
expect 'exit code after SIGTERM' 130 "$code"
directory=$(sed -n 's/^.*--store \(.*\)\/store.db --dump$/\1/p' "$work/rest")
expect 'its directory' gone "$([[ -n $directory && ! -e $directory ]] && echo gone)"

# A failure says what the host said, and what to type.
sed 's/^{$/broken/; s/<FwURL>/<FwURI>/' "$source_dir/host/demo/firmware-list.xml" > "$work/list"
mkdir "$work/tree"
cp -r "$source_dir"/{demo,cmake,examples,host} "$work/tree"
cp "$work/list" "$work/tree/host/demo/firmware-list.xml"
run "$work/tree/demo"
expect 'exit code of a failure' 1 "$code"
expect_in 'a failure' 'demo failed: ' "$work/said"
expect_in 'a failure' 'The last lines of what the host said' "$work/said"
expect_in 'a failure' $'type:\n\n    ./demo --serve' "$work/said"

# So does a command that fails in the midst. None of the programs goes on.
cp "$source_dir/host/demo/firmware-list.xml" "$work/tree/host/demo"
rm "$work/tree/host/demo/bad-channel.xml"
mkdir "$work/programs"
cp -r "$KIO_DEMO_PROGRAMS"/{kiohost,firmware_server,profiles,openapi.json,control-openapi.json,variables.json} "$work/programs"
KIO_DEMO_PROGRAMS=$work/programs run "$work/tree/demo"
expect 'exit code of a command that fails' 22 "$code"
expect_in 'a command that fails' 'demo failed: a command failed' "$work/said"
expect_in 'a command that fails' $'type:\n\n    ./demo --serve' "$work/said"
expect 'the programs that go on' '' \
  "$(readlink /proc/[0-9]*/exe 2> /dev/null | grep "^$work/programs/" || true)"
((failures == 0))
