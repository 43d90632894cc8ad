#!/usr/bin/env bash
# debian.sh [DIRECTORY]: makes the Debian packages, looks at them with lintian, installs them in a
# Debian that has nothing but its base, and tries them there: the example program is built against the
# library and run, and kiohost answers a request. Run it as root; it needs what
# `cmake/packages.sh packaging` installs, and takes Debian from where this machine's apt does. With
# DIRECTORY, the packages are made there and stay; those that it holds already are tried as they are.
# All else happens in a folder below /var/tmp and in name spaces of its own, which are gone at its end,
# however that comes.
# shellcheck disable=SC2016  # what stands in single quotes is for other shells, and for apt-get
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
release=bookworm

if [[ $# -gt 1 || ${1-} == -* ]]; then
  echo "usage: ${0##*/} [DIRECTORY]" >&2
  exit 2
fi
if [[ $(id -u) -ne 0 ]]; then
  echo "Making a tree of another system takes root. Type: sudo $0" >&2
  exit 1
fi
for program in debootstrap dh lintian unshare; do
  if ! command -v $program > /dev/null; then
    echo "There is no $program. Type: cmake/packages.sh packaging" >&2
    exit 1
  fi
done

# The outer part makes the folder and removes it; the inner one, in the name spaces, does the rest.
if [[ -z ${KIO_DEBIAN_TREE-} ]]; then
  KIO_DEBIAN_TREE=$(mktemp -d /var/tmp/kio-debian.XXXXXX)
  export KIO_DEBIAN_TREE
  inner=
  # shellcheck disable=SC2317  # the trap calls it
  clean() {
    if [[ -n $inner ]]; then
      kill -KILL "$inner" 2> /dev/null || true
      wait "$inner" 2> /dev/null || true
    fi
    rm -rf --one-file-system "$KIO_DEBIAN_TREE"
  }
  trap clean EXIT
  trap 'exit 130' INT TERM HUP
  unshare --mount --pid --fork --kill-child --mount-proc --propagation private "$0" "$@" < /dev/null &
  inner=$!
  code=0
  wait "$inner" || code=$?
  inner=
  exit "$code"
fi
packages=${1:-$KIO_DEBIAN_TREE/packages}
tree=$KIO_DEBIAN_TREE/root
log=$KIO_DEBIAN_TREE/log

# quietly COMMAND...: shows what it prints only when it fails.
quietly() {
  "$@" > "$log" 2>&1 || {
    tail -n 60 "$log" >&2
    echo "failed: $*" >&2
    exit 1
  }
}

mkdir -p "$packages"
packages=$(cd "$packages" && pwd)
if [[ -z $(find "$packages" -name '*.deb' -print -quit) ]]; then
  echo '=== making the packages'
  quietly "$top/packaging/debian/build" "$packages"
fi
(cd "$packages" && ls -- *.deb)

echo '=== lintian'
lintian --allow-root --fail-on error --tag-display-limit 0 "$packages"/*.changes

mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' \
  "Codename: $release" 'Component: main' | head -n 1)
if [[ -z $mirror ]]; then
  echo "This machine's apt knows no Debian $release. Type: apt-get update" >&2
  exit 1
fi
proxy=$(apt-config shell value Acquire::http::Proxy | sed "s/^value='\(.*\)'$/\1/")

echo "=== making a bare Debian $release"
mkdir "$tree"
quietly env http_proxy="${proxy:-${http_proxy-}}" \
  debootstrap --variant=minbase "$release" "$tree" "$mirror"
rm -rf "$tree"/etc/apt/sources.list*
for setting in sources.list sources.list.d apt.conf apt.conf.d auth.conf auth.conf.d keyrings \
  trusted.gpg trusted.gpg.d preferences.d; do
  if [[ -e /etc/apt/$setting ]]; then
    cp -rT "/etc/apt/$setting" "$tree/etc/apt/$setting"
  fi
done
for file in /etc/resolv.conf /etc/hosts /etc/ssl/certs /usr/local/share/ca-certificates \
  /usr/share/ca-certificates /usr/share/keyrings; do
  if [[ -e $file ]]; then
    mkdir -p "$tree$(dirname "$file")"
    cp -rLT "$file" "$tree$file" 2> /dev/null || true
  fi
done
mount -t proc proc "$tree/proc"
mount --rbind /dev "$tree/dev"
mkdir "$tree/packages"
cp "$packages"/*.deb "$tree/packages"

in_tree() {
  env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb \
    DEBIAN_FRONTEND=noninteractive chroot "$tree" /bin/bash -c "$1"
}

echo '=== installing the packages'
quietly in_tree 'apt-get -q update && apt-get -q install -y --no-install-recommends \
  /packages/*.deb gcc libc6-dev pkg-config curl'
in_tree 'dpkg-query -W -f "\${Package} \${Version} \${db:Status-Status}\n" "libkioapp*" kiohost'

echo '=== the example program'
in_tree 'set -e
  cd /root
  examples=/usr/share/doc/libkioapp-dev/examples
  gcc -Wall -Werror -o minimal_host $examples/minimal_host.c $(pkg-config --cflags --libs kioapp)
  ldd ./minimal_host | grep "libkioapp\.so\.1 => .*/lib/"
  mkdir run
  printf "#!/bin/sh\n" | tee run/uplink.sh > run/device_resync.sh
  chmod +x run/*.sh
  ./minimal_host run < $examples/change.xml > said
  tail -n 1 said
  grep -q "applied, result 0," said
  grep -q "<RssSetResult>0</RssSetResult>" run/rssset_result.xml'

echo '=== kiohost'
in_tree 'set -e
  cd /root
  kiohost --version
  kiohost --store kiohost.db --port 0 > said 2>&1 &
  host=$!
  for i in $(seq 600); do
    port=$(sed -n "s|.*127\.0\.0\.1:\([0-9]*\).*|\1|p" said | head -n 1)
    [ -z "$port" ] || break
    kill -0 $host || break
    sleep 0.1
  done
  if [ -z "$port" ]; then cat said >&2; exit 1; fi
  code=0
  curl -sS -f "http://127.0.0.1:$port/device" > answer || code=$?
  kill -TERM $host
  wait $host || code=$?
  head -c 200 answer
  echo
  grep -q "\"model\"" answer || code=1
  exit $code'

echo '=== the manual pages'
for page in man1/kiohost.1 man1/kiofleet.1 man3/kioapp.3 man7/kioapp-store.7 man7/kioapp-documents.7; do
  gzip -t "$tree/usr/share/man/$page.gz"
done
echo 'debian: passed'
