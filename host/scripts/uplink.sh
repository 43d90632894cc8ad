#!/bin/sh
# Restarts the uplink. On a router this would reconfigure the WAN interface; here it writes the
# state that it would bring up to uplink.state and a line to events.log, both in $KIOHOST_STATE_DIR.
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

# Prints a line with a name and the text of a node.
entry() {
  text=$(node "$2")
  line "$1=$text"
}

state=$KIOHOST_STATE_DIR/uplink.state
# Of this run alone: that of a host that was killed may not be over when the next host begins its own.
new=$state.$$
trap 'rm -f "$new"' EXIT
trap 'exit 143' TERM
hardware=$(node /uplink/hardwaretype)
conntype=$(node /uplink/conntype)
{
  line "hardware=$hardware"
  line "conntype=$conntype"
  case $conntype in
    Static)
      entry ip /uplink/ip
      entry netmask /uplink/netmask
      entry gateway /uplink/gateway
      entry dns /uplink/dns
      ;;
    PPPoE | PPPoA)
      entry loginusername /uplink/loginusername
      ;;
  esac
  case $hardware in
    ADSL | VDSL) entry isp /uplink/dsl/ispname ;;
    WWanAPN) entry isp /uplink/apn/ispname ;;
    WWan802.11) entry network /uplink/extendersite/wirelessname ;;
  esac
} >"$new"
mv "$new" "$state"
line "$(date '+%Y-%m-%dT%H:%M:%S') uplink: $hardware, $conntype" >>"$KIOHOST_STATE_DIR/events.log"
