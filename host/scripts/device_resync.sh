#!/bin/sh
# Takes over the device's own settings. On a router this would restart the services that use the
# name and the password; here it writes the state that it would bring up to device.state and a line
# to events.log, both in $KIOHOST_STATE_DIR.
set -eu
umask 077

node() {
  # An absent node counts as empty.
  "$KIOHOST_PROGRAM" --store "$KIOHOST_STORE" --get "$1" || [ $? -eq 1 ]
}

state=$KIOHOST_STATE_DIR/device.state
name=$(node /sys/friendlyname)
{
  echo "name=$name"
  echo "router=$(node /sys/routerenbl)"
  echo "roaming=$(node /zentrolinks/easyroaminginfo)"
} >"$state.new"
mv "$state.new" "$state"
echo "$(date '+%Y-%m-%dT%H:%M:%S') device: $name" >>"$KIOHOST_STATE_DIR/events.log"
