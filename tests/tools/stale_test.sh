#!/usr/bin/env bash
# stale_test.sh FILE PROGRAM ARGUMENT...: fails unless FILE is what the program prints now.
set -euo pipefail
file=$1
shift
if ! "$@" | diff "$file" -; then
  echo "$file is stale: cmake --build --preset dev --target reference_docs"
  exit 1
fi
