#!/bin/bash
# The app's side of a login, in full: learns the router's uptime and its own address, makes the key
# of the present time slot and shows it.
#
#     KIO_PASSWORD=... examples/login.sh http://192.168.1.1:8080
#
# Without KIO_PASSWORD the administrator password is asked for. Neither it nor the key ever stands on
# a command line, where other users of this machine could read it.
set -euo pipefail

router=${1:?"usage: $0 http://ROUTER:PORT"}
if [[ -z ${KIO_PASSWORD+set} ]]; then
  read -rsp 'Administrator password: ' KIO_PASSWORD
  echo >&2
fi
# The router counts bytes.
export LC_ALL=C

# The answer is {"model": ..., "name": ..., "uptime": SECONDS, ..., "events": [...]}; curl adds a line with
# the address that it was asked from.
answer=$(curl -sSf -w '\n%{local_ip}' "$router/device")
# Events have an uptime as well, and the name may be any text. So all other quoted texts are removed,
# then all that is nested: one "uptime" is left.
uptime=$(tr -d ' \t\r\n' <<<"${answer%$'\n'*}" |
  sed -n 's/\\.//g; s/"uptime":/u/g; s/"[^"]*"//g
    :nested
    s/\(.\)[[{][^][{}]*[]}]/\1/; t nested
    s/.*u\([0-9]\{1,\}\)[,}].*/\1/p')
address=${answer##*$'\n'}
[[ -n $uptime && -n $address ]] || {
  echo "this is no router: $answer" >&2
  exit 1
}

# The key is the digest of slot, address, user and password. 63 bytes of the password count, and 127 of
# the whole.
source=$((uptime / 20))${address}admin${KIO_PASSWORD:0:63}
key=$(printf '%s' "${source:0:127}" | md5sum | cut -c 1-32)

# The router skips one character between the marker and the key. The short form would be "BKey=" and
# the first 8 digits.
printf 'kioAppKey=:%s' "$key" | curl -sS --fail-with-body --data-binary @- "$router/login"
