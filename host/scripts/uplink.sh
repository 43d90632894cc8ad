#!/bin/sh
# Restarts the uplink. On a router this would reconfigure the WAN interface; here it writes the
# state that it would bring up to uplink.state and a line to events.log, both in $KIOHOST_STATE_DIR.
set -eu
umask 077

node() {
  # An absent node counts as empty.
  "$KIOHOST_PROGRAM" --store "$KIOHOST_STORE" --get "$1" || [ $? -eq 1 ]
}

state=$KIOHOST_STATE_DIR/uplink.state
hardware=$(node /uplink/hardwaretype)
conntype=$(node /uplink/conntype)
{
  echo "hardware=$hardware"
  echo "conntype=$conntype"
  case $conntype in
    Static)
      echo "ip=$(node /uplink/ip)"
      echo "netmask=$(node /uplink/netmask)"
      echo "gateway=$(node /uplink/gateway)"
      echo "dns=$(node /uplink/dns)"
      ;;
    PPPoE | PPPoA)
      echo "loginusername=$(node /uplink/loginusername)"
      ;;
  esac
  case $hardware in
    ADSL | VDSL) echo "isp=$(node /uplink/dsl/ispname)" ;;
    WWanAPN) echo "isp=$(node /uplink/apn/ispname)" ;;
    WWan802.11) echo "network=$(node /uplink/extendersite/wirelessname)" ;;
  esac
} >"$state.new"
mv "$state.new" "$state"
echo "$(date '+%Y-%m-%dT%H:%M:%S') uplink: $hardware, $conntype" >>"$KIOHOST_STATE_DIR/events.log"
