#!/bin/sh
# Takes over the device's own settings. On a router this would restart the services that use the
# name and the password; here it writes the state that it would bring up to device.state and a line
# to events.log, both in $KIOHOST_STATE_DIR.
set -eu
umask 077

# Prints the text of a node; an absent one counts as empty.
node() {
  "$KIOHOST_PROGRAM" --store "$KIOHOST_STORE" --get "$1" || [ $? -eq 1 ]
}

# Prints a text as one line. Clients choose the settings: a control character, a line end above all,
# could make a line that says something else, and becomes a "?". Those of the second kind have two
# bytes in UTF-8.
second_kind=$(printf '\302[\200-\237]')
line() {
  { printf '%s' "$1" | LC_ALL=C tr '\001-\037\177' '?' && printf '\n'; } |
    LC_ALL=C sed "s/$second_kind/?/g"
}

state=$KIOHOST_STATE_DIR/device.state
# Of this run alone: that of a host that was killed may not be over when the next host begins its own.
new=$state.$$
trap 'rm -f "$new"' EXIT
trap 'exit 143' TERM
name=$(node /sys/friendlyname)
router=$(node /sys/routerenbl)
roaming=$(node /zentrolinks/easyroaminginfo)
{
  line "name=$name"
  line "router=$router"
  line "roaming=$roaming"
} >"$new"
mv "$new" "$state"
line "$(date '+%Y-%m-%dT%H:%M:%S') device: $name" >>"$KIOHOST_STATE_DIR/events.log"
