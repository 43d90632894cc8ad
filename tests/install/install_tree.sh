#!/usr/bin/env bash
# install_tree.sh CMAKE BUILD_DIR PREFIX LIBDIR INCLUDE_DIR VERSION [PART...]: installs the build below
# PREFIX and compares the files with what an installed tree must hold that lacks the parts.
set -euo pipefail
cmake=$1 build_dir=$2 prefix=$3 libdir=$4 include_dir=$5 version=$6
shift 6
unset DESTDIR

# Installed elsewhere and moved, so that a file that names its own place does not go unnoticed.
first=$prefix.first
rm -rf "$first" "$prefix"
"$cmake" --install "$build_dir" --prefix "$first" > /dev/null
mv "$first" "$prefix"

expected() {
  (cd "$include_dir" && find kioapp -name '*.h' | sed 's|^|include/|') |
    grep -vxF -f <(printf 'include/kioapp/%s.h\n' "${@,,}")
  echo "$libdir/libkioapp.so -> libkioapp.so.${version%%.*}"
  echo "$libdir/libkioapp.so.${version%%.*} -> libkioapp.so.$version"
  echo "$libdir/libkioapp.so.$version"
  echo "$libdir/pkgconfig/kioapp.pc"
  for file in Config ConfigVersion Targets; do
    echo "$libdir/cmake/kioapp/kioapp$file.cmake"
  done
  # The manual pages, when the target docs has made them.
  find "$build_dir/man" -name '*.[0-9]' -printf '%f\n' | sed 's|.*\.\([0-9]\)$|share/man/man\1/&|'
}
# The file of the build type's own is named after it.
installed() {
  (cd "$prefix" && find . -type f ! -name 'kioappTargets-*.cmake' -printf '%P\n' \
    -o -type l -printf '%P -> %l\n')
}
diff <(expected "$@" | sort) <(installed | sort)

# features.h says what is there.
says() { sed -n 's/^#define KIOAPP_HAS_\(.*\) 0$/\1/p' "$prefix/include/kioapp/features.h" | sort; }
diff <(printf '%s\n' "$@" | sed '/^$/d' | sort) <(says)
[[ $(grep -c '^#define KIOAPP_HAS_.* [01]$' "$prefix/include/kioapp/features.h") -eq 4 ]]
