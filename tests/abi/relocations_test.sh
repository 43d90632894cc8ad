#!/usr/bin/env bash
# relocations_test.sh READELF WANT PROGRAM: how a program has the library's data. WANT is "copies"
# when each of them that it uses has been copied into it, "none" when none has; the tests of both kinds
# of hosts would say nothing if they were of one kind.
set -euo pipefail
readelf=$1 want=$2 program=$3
copies=$("$readelf" -rW "$program" | awk '$3 ~ /_COPY$/ {sub(/@.*/, "", $5); print $5}')
status=0
for name in rssXmlData fwXmlData string clientauthinfo cur_authinfo daemon_log_path \
  daemon_log_header daemon_log_level; do
  found=none
  if grep -qx "$name" <<< "$copies"; then
    found=copies
  fi
  if [[ $found != "$want" ]]; then
    echo "$program: $name: $found, expected $want" >&2
    status=1
  fi
done
exit "$status"
