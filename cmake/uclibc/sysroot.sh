#!/usr/bin/env bash
# sysroot.sh [--print] mips|mipsel: builds a sysroot with uClibc, its headers and its start files
# from the source that Debian ships, unless the cache holds it already, and prints its path. With
# --print it only tells the path.
#
# The cache is ${KIO_CACHE_DIR}, by default ${XDG_CACHE_HOME:-$HOME/.cache}/kioapp. What the result
# depends on is part of the path, so a sysroot found there is never out of date.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

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
  mips) order=BIG ;;
  mipsel) order=LITTLE ;;
  *) fail 'usage: sysroot.sh [--print] mips|mipsel' ;;
esac

triple=$arch-linux-gnu
kernel_headers=/usr/$triple/include
packages=(gcc make uclibc-source xz-utils "g++-$triple" "linux-libc-dev-$arch-cross")
missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null || true)
  [[ $state == installed ]] || missing+=("$package")
done
if ((${#missing[@]} > 0)); then
  fail "install these packages first (cmake/packages.sh target does): ${missing[*]}"
fi
sources=(/usr/src/uClibc-ng-*.tar.xz)
[[ -f ${sources[0]} ]] || fail "uclibc-source holds no /usr/src/uClibc-ng-*.tar.xz"

cache=${KIO_CACHE_DIR:-${XDG_CACHE_HOME:-${HOME:?no HOME, set KIO_CACHE_DIR}/.cache}/kioapp}
key=$({
  cat "$here/config" "$here/sysroot.sh"
  basename "${sources[0]}"
  "$triple-g++" -dumpfullversion
  dpkg-query -W -f '${Version}' "linux-libc-dev-$arch-cross"
} | sha256sum | cut -c 1-12)
sysroot=$cache/uclibc-$arch-$key
if [[ $print_only == yes || -e $sysroot/usr/lib/libc.so ]]; then
  echo "$sysroot"
  exit 0
fi

mkdir -p "$cache"
# Only one build of a sysroot at a time; who had to wait finds it done.
exec 9> "$sysroot.lock"
flock 9
if [[ -e $sysroot/usr/lib/libc.so ]]; then
  echo "$sysroot"
  exit 0
fi

echo "Building the uClibc sysroot for $arch in $sysroot: some minutes" >&2
log=$sysroot.log
work=$(mktemp -d "$cache/build-XXXXXX")
trap 'rm -rf "$work"' EXIT

build() {
  tar -xf "${sources[0]}" -C "$work" --strip-components=1 --one-top-level=source
  # The kernel's headers lie among those of another C library, which must not be found.
  mkdir -p "$work/kernel" "$work/root"
  for name in linux asm asm-generic mtd misc; do
    cp -a "$kernel_headers/$name" "$work/kernel/"
  done
  {
    cat "$here/config"
    echo "ARCH_WANTS_${order}_ENDIAN=y"
    echo "KERNEL_HEADERS=\"$work/kernel\""
    echo "CROSS_COMPILER_PREFIX=\"$triple-\""
  } > "$work/source/.config"
  # Its pass over the objects with nm drops empty ones, one process each; as echo it keeps them all.
  local make=(make -C "$work/source" ARCH=mips NM=echo)
  "${make[@]}" olddefconfig
  # Options that this version does not know vanish without a word.
  sed -E '/^[^#]/!d; s/=y$//' "$here/config" | while IFS= read -r option; do
    if [[ $option != *=* ]] && ! grep -q "^$option=y" "$work/source/.config"; then
      echo "uClibc did not take the option $option"
      exit 1
    fi
  done
  "${make[@]}" -j "$(nproc)"
  "${make[@]}" PREFIX="$work/root/" install
  cp -a "$work/kernel/." "$work/root/usr/include/"
}
# In a shell of its own: a condition would switch off the stop at errors.
set +e
(
  set -e
  build
) > "$log" 2>&1
status=$?
set -e
if ((status != 0)); then
  tail -n 20 "$log" >&2
  fail "the build failed; the whole output is in $log"
fi
rm -f "$log"
mv "$work/root" "$sysroot"
echo "$sysroot"
