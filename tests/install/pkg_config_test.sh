#!/usr/bin/env bash
# pkg_config_test.sh CC PKG_CONFIG PKG_CONFIG_DIR VERSION SOURCE FLAGS: builds SOURCE with what the
# installed pkg-config file says, and runs it.
set -euo pipefail
cc=$1 pkg_config=$2 version=$4 source=$5 flags=$6
export PKG_CONFIG_LIBDIR=$3
unset PKG_CONFIG_PATH PKG_CONFIG_SYSROOT_DIR
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if [[ $("$pkg_config" --modversion kioapp) != "$version" ]]; then
  echo "kioapp.pc does not tell the version $version" >&2
  exit 1
fi
read -ra options <<< "$flags $("$pkg_config" --cflags --libs kioapp)"
# The source stands before the library: a linker that drops unused libraries reads from the left.
"$cc" -o "$work/minimal_host" "$source" "${options[@]}"
library_dir=$("$pkg_config" --variable=libdir kioapp)
LD_LIBRARY_PATH=$library_dir bash "$(dirname "$0")/run_example.sh" "$work/minimal_host"
