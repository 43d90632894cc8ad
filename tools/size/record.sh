#!/usr/bin/env bash
# Records how large the library is next to its peers; see usage below.
# shellcheck disable=SC2016  # apt-get fills in what begins with a dollar
set -euo pipefail
cd "$(dirname "$0")/../.."
figures=tools/size/figures.tsv

usage() {
  cat << 'END'
usage: tools/size/record.sh library|peers

Measures on each of the targets of tools/size/targets, and writes tools/size/figures.tsv and
docs/size.md anew.

  library  this library, built here: the whole, without each of its parts, and the settings alone
  peers    the libraries of Debian's packages. apt-get fetches them for each architecture, with lists
           of its own in a temporary folder: nothing is installed, and the architectures of this
           system stay as they are.

Needs what `cmake/packages.sh target` installs.
END
}
case ${1:-} in
  library | peers) what=$1 ;;
  -h | --help)
    usage
    exit 0
    ;;
  *)
    usage >&2
    exit 2
    ;;
esac

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# in_log COMMAND...: its output is shown only when it fails.
in_log() {
  "$@" > "$work/log" 2>&1 || {
    tail -n 20 "$work/log" >&2
    echo "This failed: $*" >&2
    exit 1
  }
}

# measure TOOL_PREFIX FILE: text, data, bss, the size of the file without symbols, and the libraries
# that it needs, parted by tabs.
measure() {
  "$1strip" -o "$work/stripped" "$2"
  printf '%s\t%d\t%s\n' "$("$1size" "$work/stripped" | awk 'NR == 2 {print $1 "\t" $2 "\t" $3}')" \
    "$(stat -c %s "$work/stripped")" \
    "$("$1readelf" -d "$work/stripped" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | paste -sd ' ')"
}

# measure_library PRESET TOOL_PREFIX
measure_library() {
  local name version
  version=$(sed -nE 's/^#define KIOAPP_VERSION_[A-Z]+ ([0-9]+)$/\1/p' include/kioapp/version.h | paste -sd .)
  in_log cmake --preset "$1"
  in_log cmake --build --preset "$1" --target size_libraries
  for name in whole without_variables without_firmware without_auth without_dump settings; do
    local file=build/$1/tests/target/size_$name/libkioapp.so
    [[ $name != whole ]] || file=build/$1/src/libkioapp.so
    printf '%s\tlibkioapp\t%s\t%s\t%s\n' "$1" "$name" "$version" "$(measure "$2" "$file")"
  done
}

# Package and file of what is measured. A peer needs those that follow it, apart from the C library.
peers=(
  'libmxml libmxml1 libmxml.so.1 -'
  'expat libexpat1 libexpat.so.1 -'
  'json-c libjson-c5 libjson-c.so.5 -'
  'libxml2 libxml2 libxml2.so.2 -'
  'zlib zlib1g libz.so.1 libxml2'
  'liblzma liblzma5 liblzma.so.5 libxml2'
  'ICU libicu72 libicuuc.so.72 libxml2'
  'ICU-data libicu72 libicudata.so.72 libxml2'
  'libstdc++ libstdc++6 libstdc++.so.6 libxml2'
  'libgcc libgcc-s1 libgcc_s.so.1 libxml2'
)

release=bookworm
# measure_peers PRESET TOOL_PREFIX ARCHITECTURE
measure_peers() {
  local root=$work/$3 name package file user version
  mkdir -p "$root"/{lists/partial,cache/archives/partial,debs,unpacked}
  # The release itself, whose packages do not change with each update.
  apt-get indextargets --format '$(CODENAME) deb $(REPO_URI) $(CODENAME) $(COMPONENT)' \
    'Created-By: Packages' 'Component: main' |
    sed -n "s/^$release deb/deb/p" | sort -u > "$root/sources"
  [[ -s $root/sources ]] || {
    echo "apt knows no server of Debian's $release" >&2
    exit 1
  }
  local apt_get=(
    apt-get -o "APT::Architecture=$3" -o "APT::Architectures=$3" -o "Dir::State::Lists=$root/lists"
    -o "Dir::Etc::sourcelist=$root/sources" -o Dir::Etc::sourceparts=- -o Dir::State::status=/dev/null -o "Dir::Cache=$root/cache" -o Debug::NoLocking=1
    -o "APT::Sandbox::User=$(id -un)"
  )
  in_log "${apt_get[@]}" update
  local packages=()
  while read -r _ package _; do
    packages+=("$package")
  done < <(printf '%s\n' "${peers[@]}" | sort -u -k 2,2)
  (cd "$root/debs" && in_log "${apt_get[@]}" download "${packages[@]}")
  for file in "$root"/debs/*.deb; do
    dpkg-deb -x "$file" "$root/unpacked"
  done
  while read -r name package file user; do
    version=$(dpkg-deb -f "$root/debs/${package}"_*.deb Version)
    file=$(find "$root/unpacked" -name "$file" -print -quit)
    printf '%s\t%s\t%s\t%s\t%s\n' "$1" "$name" "$user" "$version" "$(measure "$2" "$file")"
  done < <(printf '%s\n' "${peers[@]}")
}

while read -r preset prefix architecture; do
  echo "measuring for $preset" >&2
  measure_"$what" "$preset" "$prefix" "$architecture" >> "$work/new"
done < <(grep -v '^#' tools/size/targets)
{
  printf '# target\tname\tpart\tversion\ttext\tdata\tbss\tfile\tneeded\n'
  awk -F '\t' -v what="$what" '!/^#/ && ($2 == "libkioapp") != (what == "library")' "$figures" 2> /dev/null || true
  cat "$work/new"
} > "$work/all"
# The library first, then its peers in their order; targets in theirs.
{
  grep '^#' "$work/all"
  while read -r preset _; do
    grep -P "^$preset\tlibkioapp\t" "$work/all" || true
    grep -P "^$preset\t(?!libkioapp\t)" "$work/all" || true
  done < <(grep -v '^#' tools/size/targets)
} > "$work/sorted"
cp "$work/sorted" "$figures"
tools/size/page.sh > docs/size.md
