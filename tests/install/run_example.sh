#!/usr/bin/env bash
# run_example.sh PROGRAM: runs the example program on three documents and checks what it does.
set -euo pipefail
program=$1
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT

printf '#!/bin/sh\necho resync >> "%s/events"\n' "$directory" > "$directory/device_resync.sh"
chmod +x "$directory/device_resync.sh"

# document NAME MINOR: a settings document.
document() {
  echo "<root><specVersion><major>1</major><minor>$2</minor></specVersion><Device>" \
    "<DeviceName>$1</DeviceName><DevicePwd>secret12</DevicePwd><RouterEnbl>1</RouterEnbl>" \
    "</Device></root>"
}

# expect STATUS CODE MESSAGE WAIT WORD EVENTS: what the program must do with the document on its
# standard input.
expect() {
  local status=0
  rm -f "$directory/events" "$directory/rssset_result.xml"
  "$program" "$directory" > "$directory/output" || status=$?
  if [[ $status -ne $1 ]]; then
    echo "exit status $status, expected $1" >&2
    return 1
  fi
  diff - "$directory/output" << END
$directory/rssset_result.xml: $5, result $2, message '$3', wait $4 s
END
  diff - "$directory/rssset_result.xml" << END
<?xml version="1.0" ?>
<root>
 <RssSetResult>$2</RssSetResult>
 <RssSetMsg>$3</RssSetMsg>
 <RssGetWaitSec>$4</RssGetWaitSec>
</root>
END
  diff <(printf '%s' "$6") <(cat "$directory/events" 2> /dev/null)
}

expect 0 0 '' 5 applied $'resync\n' < <(document 'Kitchen &amp; bath' 1)
expect 1 10 Device/DeviceName 0 refused '' < <(document '' 1)
expect 1 1 '' 0 refused '' < <(document Kitchen 0)
