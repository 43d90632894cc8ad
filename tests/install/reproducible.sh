#!/usr/bin/env bash
# reproducible.sh [LIBRARY]: compares two builds of the library, byte for byte. They come from copies of
# the tree in folders of different names, at different times, with other times on the files. LIBRARY, a
# release build of this tree that is there already, takes the place of the first: it was made where the
# tree is. Takes a minute or two, half of that with LIBRARY; the builds here use nothing that ccache
# holds.
set -euo pipefail
cd "$(dirname "$0")/../.."
export LC_ALL=C
if (($# > 1)) || [[ ${1:-} == -* ]]; then
  echo "usage: ${0##*/} [LIBRARY]" >&2
  exit 2
fi
first=${1:-}
if [[ -n $first && ! -s $first ]]; then
  echo "There is no library $first." >&2
  exit 1
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
if [[ -z $first ]]; then
  copy "$work/a" '2020-01-01 00:00'
  build "$work/a" "$work/a/build"
  first=$work/a/build/src/libkioapp.so
fi
copy "$work/another folder with a longer name/tree" '2025-06-01 12:00'
HOME=$work TZ=Pacific/Auckland build "$work/another folder with a longer name/tree" "$work/b"

second=$work/b/src/libkioapp.so
if ! cmp "$first" "$second"; then
  echo "The two libraries differ: $(sha256sum < "$first") and $(sha256sum < "$second")" >&2
  exit 1
fi
# A path of either build in the library would make it depend on the place.
if grep -qaF -e "$work" -e "$PWD/src/" "$first" "$second"; then
  echo "The library holds the path of its build." >&2
  exit 1
fi
echo "reproducible: $(sha256sum < "$first" | cut -d ' ' -f 1), $(stat -Lc %s "$first") bytes, twice"
