#!/usr/bin/env bash
# recipes_test.sh SOURCE_DIR VERSION PART...: the recipes below packaging/ are of this version, have a
# switch for each part that may be left out and for nothing else, and name the exported names.
set -euo pipefail
source_dir=$1 version=$2
shift 2
parts=$(printf '%s\n' "$@" | sort)
export LC_ALL=C
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# names PATTERN FILE: what the group of the pattern matches, sorted.
names() { sed -nE "s/$1/\1/p" "$2" | sort; }
# look FOLDER: whether the recipes there fit; says what does not.
look() {
  local packages=$1 openwrt=$1/openwrt/Makefile buildroot=$1/buildroot/kioapp
  local status=0
  # same WHAT EXPECTED FOUND
  same() {
    if [[ $2 != "$3" ]]; then
      printf '%s:\n%s\nexpected:\n%s\n' "$1" "$3" "$2"
      status=1
    fi
  }
  same 'version in openwrt' "$version" "$(names '^PKG_VERSION:=(.*)$' "$openwrt")"
  same 'version in buildroot' "$version" "$(names '^KIOAPP_VERSION = (.*)$' "$buildroot/kioapp.mk")"
  same 'version in debian/changelog' "$version" \
    "$(sed -nE '1s/^kioapp \((.*)\) .*/\1/p' "$packages/debian/changelog")"

  same 'parts in openwrt' "$parts" "$(names '^KIOAPP_PARTS:=(.*)$' "$openwrt" | tr ' ' '\n' | sort)"
  same 'switches in openwrt' "$parts" "$(names '^\tconfig LIBKIOAPP_WITH_(.*)$' "$openwrt")"
  same 'parts in buildroot' "$parts" \
    "$(names '^KIOAPP_PARTS = (.*)$' "$buildroot/kioapp.mk" | tr ' ' '\n' | sort)"
  same 'switches in buildroot' "$parts" \
    "$(names '^config BR2_PACKAGE_KIOAPP_WITH_(.*)$' "$buildroot/Config.in")"

  same 'symbols of the Debian package' \
    "$(sed -nE '/local:/q; s/^ *([A-Za-z0-9_]+);$/\1/p' "$source_dir/src/exports.map" | sort)" \
    "$(names '^ ([A-Za-z0-9_]+)@Base .*$' "$packages/debian/libkioapp1.symbols")"
  return $status
}
[[ $(wc -l <<< "$parts") -eq 4 ]]
look "$source_dir/packaging" >&2

# What differs is seen.
for change in 's/^PKG_VERSION:=.*/PKG_VERSION:=0.0.1/ openwrt/Makefile' \
  '/config LIBKIOAPP_WITH_AUTH/d openwrt/Makefile' 's/FIRMWARE//;s/  */ / openwrt/Makefile' \
  's/^KIOAPP_VERSION.*/KIOAPP_VERSION=0.0.1/ buildroot/kioapp/kioapp.mk' \
  's/_WITH_DUMP/_WITH_LUMP/ buildroot/kioapp/Config.in' 's/DUMP// buildroot/kioapp/kioapp.mk' \
  '1s/([^)]*)/(0.0.1)/ debian/changelog' '/check@/d debian/libkioapp1.symbols'; do
  rm -rf "$work/packaging"
  cp -r "$source_dir/packaging" "$work"
  sed -i "${change% *}" "$work/packaging/${change##* }"
  if look "$work/packaging" > /dev/null; then
    echo "the test does not see: $change" >&2
    exit 1
  fi
done
