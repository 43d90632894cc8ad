#!/usr/bin/env bash
# Fifty clients of all kinds at the reference host for five minutes, or for as long as is said. Fails
# when an answer is wrong, or when memory, descriptors, processes, files or the work for an answer grow.
# Usage: tests/flood/long_run.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/../.."

mkdir -p build
if ! { cmake --preset release && cmake --build --preset release --target kiohost_long_run; } \
  > build/long_run.log 2>&1; then
  cat build/long_run.log >&2
  exit 1
fi
exec build/release/tests/flood/kiohost_long_run "${1:-300}"
