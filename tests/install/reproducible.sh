#!/usr/bin/env bash
# reproducible.sh: builds the library alone twice, from copies of the tree in folders of different
# names, at different times, with other times on the files, and looks whether the two files are the
# same, byte for byte. Takes a minute or two; nothing that ccache holds is used.
set -euo pipefail
cd "$(dirname "$0")/../.."
export LC_ALL=C
if (($# > 0)); then
  echo "usage: ${0##*/}" >&2
  exit 2
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# copy FOLDER TIME: the tree as it is here, changes that are not committed included.
copy() {
  mkdir -p "$1"
  git ls-files -z --cached --others --exclude-standard |
    while IFS= read -r -d '' file; do
      [[ ! -e $file && ! -L $file ]] || printf '%s\0' "$file"
    done | tar --null -T - -cf - | tar -xf - -C "$1"
  find "$1" -exec touch -h -d "$2" {} +
}
# build SOURCE_DIR BUILD_DIR: the compiler refuses the macros that tell the time.
build() {
  local as_given=(env -u CMAKE_C_COMPILER_LAUNCHER -u CMAKE_CXX_COMPILER_LAUNCHER -u CFLAGS -u CXXFLAGS)
  if ! { "${as_given[@]}" cmake -S "$1" -B "$2" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DKIO_BUILD_HOST=OFF -DCMAKE_CXX_FLAGS=-Wdate-time &&
    cmake --build "$2" --target kioapp -j 2; } > "$work/log" 2>&1; then
    cat "$work/log" >&2
    exit 1
  fi
}
copy "$work/a" '2020-01-01 00:00'
build "$work/a" "$work/a/build"
copy "$work/another folder with a longer name/tree" '2025-06-01 12:00'
HOME=$work TZ=Pacific/Auckland build "$work/another folder with a longer name/tree" "$work/b"

first=$work/a/build/src/libkioapp.so
second=$work/b/src/libkioapp.so
if ! cmp "$first" "$second"; then
  echo "The two libraries differ: $(sha256sum < "$first") and $(sha256sum < "$second")" >&2
  exit 1
fi
# A path of either build in the library would make it depend on the place.
if grep -qaF "$work" "$first"; then
  echo "The library holds the path of its build." >&2
  exit 1
fi
echo "reproducible: $(sha256sum < "$first" | cut -d ' ' -f 1), $(stat -Lc %s "$first") bytes, twice"
