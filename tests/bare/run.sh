#!/usr/bin/env bash
# run.sh [demo|test]: ./demo and ./test as a newcomer runs them, on a Debian 12 that has nothing but
# its base: tells how long they take and what they leave running. Run it as root; it needs
# debootstrap and git, and takes Debian from where this machine's apt does. What it tries is the last
# commit. All of it happens in a folder below /var/tmp and in name spaces of its own, which are gone
# at its end, however that comes.
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
release=bookworm
what=${1:-all}

case $what in
  all | demo | test) ;;
  *)
    echo "usage: ${0##*/} [demo|test]" >&2
    exit 2
    ;;
esac
if [[ $(id -u) -ne 0 ]]; then
  echo "Making a tree of another system takes root. Type: sudo $0" >&2
  exit 1
fi
for program in debootstrap git unshare; do
  if ! command -v $program > /dev/null; then
    echo "There is no $program. Type: apt-get install --no-install-recommends debootstrap git" >&2
    exit 1
  fi
done

# The outer part makes the folder and removes it; the inner one, in the name spaces, does the rest.
if [[ -z ${KIO_BARE_TREE-} ]]; then
  KIO_BARE_TREE=$(mktemp -d /var/tmp/kio-bare.XXXXXX)
  export KIO_BARE_TREE
  inner=
  # shellcheck disable=SC2317  # the trap calls it
  clean() {
    if [[ -n $inner ]]; then
      kill -KILL "$inner" 2> /dev/null || true
      wait "$inner" 2> /dev/null || true
    fi
    rm -rf --one-file-system "$KIO_BARE_TREE"
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
tree=$KIO_BARE_TREE/root

# shellcheck disable=SC2016  # apt-get expands it
# What apt has been told here: where Debian comes from, and how to get there.
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' \
  "Codename: $release" 'Component: main' | head -n 1)
if [[ -z $mirror ]]; then
  echo "This machine's apt knows no Debian $release. Type: apt-get update" >&2
  exit 1
fi
setting() { apt-config shell value "$1" | sed "s/^value='\(.*\)'$/\1/"; }
proxy=$(setting Acquire::http::Proxy)

echo "=== making a bare Debian $release"
mkdir "$tree"
http_proxy=${proxy:-${http_proxy-}} debootstrap --variant=minbase "$release" "$tree" "$mirror" \
  > "$KIO_BARE_TREE/debootstrap.log" 2>&1 || {
  tail -n 20 "$KIO_BARE_TREE/debootstrap.log" >&2
  exit 1
}
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
git clone -q "$source_dir" "$tree/root/kioapp"

in_tree() {
  env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb \
    chroot "$tree" /bin/bash -c 'cd /root/kioapp && "$@"' bash "$@"
}
times=()
failed=0
# measure WHAT COMMAND...: runs it in the tree and notes how long it took.
measure() {
  local code=0 time process
  echo "=== $1"
  TIMEFORMAT='%0R s, of which the processors worked %U + %S s'
  { time in_tree "${@:2}" >&3 2>&3 || code=$?; } 3>&1 2> "$KIO_BARE_TREE/time"
  time=$(tail -n 1 "$KIO_BARE_TREE/time")
  for process in /proc/[0-9]*; do
    if [[ $(readlink "$process/root") == "$tree" ]]; then
      printf 'left running: process %s: %s\n' "${process#/proc/}" \
        "$(tr '\0' ' ' < "$process/cmdline")"
      code=1
    fi
  done
  times+=("$(printf '%-28s exit code %d, %s' "$1" "$code" "$time")")
  ((code == 0)) || failed=1
}

if [[ $what != test ]]; then
  measure './demo, nothing installed' ./demo
  in_tree rm -rf build
  measure './demo, packages installed' ./demo
fi
if [[ $what != demo ]]; then
  measure 'the packages of ./test' cmake/packages.sh test
  measure './test' ./test
fi
echo "=== summary ($(nproc) processors)"
printf '%s\n' "${times[@]}"
exit "$failed"
