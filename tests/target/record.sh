#!/usr/bin/env bash
# record.sh: measures the library on all targets, and writes the record and docs/footprint.md anew.
set -euo pipefail
cd "$(dirname "$0")/../.."
for preset in mips-uclibc mipsel-uclibc mips-glibc mipsel-glibc; do
  cmake --preset "$preset" > /dev/null
  cmake --build --preset "$preset" --target footprint_record
done
git --no-pager diff --stat -- tests/target/recorded docs/footprint.md
