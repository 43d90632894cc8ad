#!/usr/bin/env bash
# Runs kioctl conform against every profile of the virtual router: some 1,500 cases. The tests try one
# profile and each planted fault.
set -euo pipefail
cd "$(dirname "$0")/../.."

cmake/packages.sh test
mkdir -p build
if ! { cmake --preset dev && cmake --build --preset dev --target kiohost kioctl; } \
  > build/conform.log 2>&1; then
  cat build/conform.log >&2
  exit 1
fi
export KIO_CTL_PROGRAM=$PWD/build/dev/ctl/kioctl KIO_E2E_HOST=$PWD/build/dev/host/kiohost
KIO_SOURCE_DIR=$PWD exec python3 -B tests/ctl/conform_profiles_test.py
