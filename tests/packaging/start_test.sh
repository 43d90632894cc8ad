#!/usr/bin/env bash
# start_test.sh SOURCE_DIR: what packaging/oci/start makes of a container's name and
# environment, with a kiohost that prints its arguments.
set -euo pipefail
start=$1/packaging/oci/start
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
printf '#!/bin/sh\nprintf "%%s\\n" "$*"\n' > "$work/bin/kiohost"
printf '#!/bin/sh\nprintenv NAME\n' > "$work/bin/hostname"
chmod +x "$work"/bin/*
# said NAME [ARGUMENT...]: the arguments of kiohost in a container of this name.
said() {
  NAME=$1 PATH=$work/bin:$PATH KIO_DATA=$work KIO_PROGRAMS=$work/bin sh "$start" "${@:2}"
}
failed=0
expect() {
  if [[ $2 != "$3" ]]; then
    printf '%s:\n  wanted %s\n  got    %s\n' "$@"
    failed=1
  fi
}
data="--store $work/router/router.db --temp-dir $work/router --listen 0.0.0.0"
own='--set /sys/friendlyname=Router 300 --set /fwupgradeinfo/devicemac=02:4B:00:01:2C:01'
own+=' --set /lan/wireless2.4:1/wirelessbssid=02:4B:00:01:2C:02 --set /lan/wireless5:1/wirelessbssid=02:4B:00:01:2C:05'
expect 'a container' "$data --port 8080 --name lab --open" "$(said lab --open)"
for name in lab- lab-x1 lab-1234567 lab7; do
  expect "the name $name" "$data --port 8080 --name $name" "$(said $name)"
done
expect 'one of a set' "$data --port 9 --name a.b --name routers-299 $own --open" \
  "$(KIO_PORT=9 KIO_NAMES=a.b said routers-299 --open)"
: > "$work/router/router.db"
expect 'the same later' "$data --port 8080 --name routers-299" "$(said routers-299)"
expect 'who may read its folder' 700 "$(stat -c %a "$work/router")"
exit "$failed"
