#!/usr/bin/env bash
# sysroot.sh [--print] aarch64|mipsel|x86_64: unpacks Debian's packages of musl for an architecture
# into a sysroot, unless the cache holds it already, and prints its path. With --print it only tells
# the path.
#
# The packages come by apt-get, which checks them, with lists of its own in the cache: the
# architectures of this system stay as they are, and nothing is installed. The cache is that of
# cmake/uclibc/sysroot.sh.
set -euo pipefail

fail() {
  echo "sysroot.sh: $1" >&2
  exit 1
}

print_only=no
if [[ ${1:-} == --print ]]; then
  print_only=yes
  shift
fi
arch=${1:-}
case $arch in
  aarch64) debian=arm64 ;;
  mipsel) debian=mipsel ;;
  x86_64) debian=amd64 ;;
  *) fail 'usage: sysroot.sh [--print] aarch64|mipsel|x86_64' ;;
esac

version=$(apt-cache policy musl-dev | sed -n 's/^ *Candidate: //p')
[[ -n $version && $version != '(none)' ]] || fail 'apt-cache knows no package musl-dev: apt-get update'
cache=${KIO_CACHE_DIR:-${XDG_CACHE_HOME:-${HOME:?no HOME, set KIO_CACHE_DIR}/.cache}/kioapp}
key=$({
  cat "$0"
  echo "$version"
} | sha256sum | cut -c 1-12)
sysroot=$cache/musl-$arch-$key
if [[ $print_only == yes || -e $sysroot/usr/lib/libc.so ]]; then
  echo "$sysroot"
  exit 0
fi

mkdir -p "$cache"
# Only one at a time; who had to wait finds it done.
exec 9> "$sysroot.lock"
flock 9
if [[ -e $sysroot/usr/lib/libc.so ]]; then
  echo "$sysroot"
  exit 0
fi

echo "Fetching musl for $arch into $sysroot" >&2
log=$sysroot.log
work=$(mktemp -d "$cache/build-XXXXXX")
trap 'rm -rf "$work"' EXIT

fetch() {
  mkdir -p "$work"/lists/partial "$work"/cache/archives/partial "$work"/debs "$work"/root/usr "$work"/root/lib
  local apt_get=(
    apt-get -o "APT::Architecture=$debian" -o "APT::Architectures=$debian"
    -o "Dir::State::Lists=$work/lists" -o "Dir::State::status=/dev/null" -o "Dir::Cache=$work/cache"
    -o Debug::NoLocking=1 -o "APT::Sandbox::User=$(id -un)"
  )
  "${apt_get[@]}" update
  (cd "$work/debs" && "${apt_get[@]}" download "musl=$version" "musl-dev=$version")
  local package
  for package in "$work"/debs/*.deb; do
    dpkg-deb -x "$package" "$work/unpacked"
  done
  # Where a sysroot has them: the packages keep out of the way of glibc.
  mv "$work/unpacked/usr/include/$arch-linux-musl" "$work/root/usr/include"
  mv "$work/unpacked/usr/lib/$arch-linux-musl" "$work/root/usr/lib"
  cp "$work/unpacked/lib/$arch-linux-musl/libc.so" "$work/root/usr/lib/libc.so"
  ln -s ../usr/lib/libc.so "$work/root/lib/ld-musl-$arch.so.1"
}
# In a shell of its own: a condition would switch off the stop at errors.
set +e
(
  set -e
  fetch
) > "$log" 2>&1
status=$?
set -e
if ((status != 0)); then
  tail -n 20 "$log" >&2
  fail "the packages could not be had; the whole output is in $log"
fi
rm -f "$log"
mv "$work/root" "$sysroot"
echo "$sysroot"
