#!/usr/bin/env bash
# Floods the reference host for some two minutes with requests of all kinds and prints the figures.
# Fails when memory or descriptors are left behind, or when a client that behaves is not served.
# Usage: tests/flood/run.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/../.."

mkdir -p build
if ! { cmake --preset release && cmake --build --preset release --target kiohost_flood; } \
  > build/flood.log 2>&1; then
  cat build/flood.log >&2
  exit 1
fi
exec build/release/tests/flood/kiohost_flood "${1:-120}"
