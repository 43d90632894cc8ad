#!/usr/bin/env bash
# stale_test.sh PROGRAM FORMAT FILE: fails unless FILE is what the program makes now.
set -euo pipefail
if ! "$1" "$2" | diff "$3" -; then
  echo "$3 is stale: cmake --build --preset dev --target variable_docs"
  exit 1
fi
