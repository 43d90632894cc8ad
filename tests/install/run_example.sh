#!/usr/bin/env bash
# run_example.sh PROGRAM: runs the example program on the demo's document and on two bad ones, and
# checks what it does.
set -euo pipefail
program=$1
document=$(dirname "$0")/../../host/demo/change.xml
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT

for script in uplink.sh device_resync.sh; do
  printf '#!/bin/sh\necho %s >> "%s/events"\n' "$script" "$directory" > "$directory/$script"
  chmod +x "$directory/$script"
done

# expect STATUS CODE MESSAGE WAIT WORD EVENTS NODES: what the program must do with the document on its
# standard input, and what it writes into its store.
expect() {
  local status=0
  rm -f "$directory/events" "$directory/rssset_result.xml"
  "$program" "$directory" > "$directory/output" || status=$?
  if [[ $status -ne $1 ]]; then
    echo "exit status $status, expected $1" >&2
    return 1
  fi
  diff - "$directory/output" << END
$7$directory/rssset_result.xml: $5, result $2, message '$3', wait $4 s
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

radio=/lan/wireless2.4:1
written=$(
  printf 'writes %s\n' /sys/{friendlyname,user:1/password} \
    /uplink/{conntype,ip,netmask,gateway,dns} \
    $radio/{wirelessname,encryptionmode,encryptiontype,encryptionkey,channel} \
    $radio/accesscontrol/{wlacenbl,wlacmode} \
    $radio/accesscontrol/acrule:{1,2}/{active,mac} $radio/accesscontrol/acrule:3/mac \
    /sys/factorydefault
)
expect 0 0 '' 35 applied $'uplink.sh\ndevice_resync.sh\n' "$written"$'\n' < "$document"
expect 1 10 Device/DeviceName 0 refused '' '' \
  < <(sed 's/<DeviceName>.*</<DeviceName></' "$document")
expect 1 1 '' 0 refused '' '' < <(sed '0,/<minor>1/s//<minor>0/' "$document")
