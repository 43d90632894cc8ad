#!/usr/bin/env bash
# Builds the host under the thread sanitizer, in build/threads, and runs the end-to-end tests of the
# debug build with it. Fails when a test fails, or when the sanitizer reports anything.
set -euo pipefail
cd "$(dirname "$0")/../.."
# shellcheck source=cmake/progress.sh
. cmake/progress.sh

build=build/threads
reports=$PWD/$build/reports
mkdir -p "$build"
build_preset dev "$build/tests_build.log" tests/e2e/threads.sh || exit 1
# The host alone is sanitized: what it is tested with is there.
if ! { cmake --preset dev -B "$build" -DKIO_SANITIZE=thread -DKIO_TESTS_OF="$PWD/build/dev" &&
  cmake --build "$build" --target kiohost kiofleet; } > "$build/build.log" 2>&1; then
  tail -n 40 "$build/build.log" >&2
  exit 1
fi

# SQLite is not sanitized: it reads the index of its log without a lock, and looks then whether it was
# whole. The library's handler of the alarm calls what a handler may not; the host lets the alarm come
# in the wait of the library's thread alone.
export TSAN_OPTIONS="log_path=$reports/report ignore_noninstrumented_modules=1 report_signal_unsafe=0 \
disable_coredump=0"
rm -rf "$reports"
mkdir "$reports"

# Without reports of a program that has a race, those of the host would be missing, too.
c++ -g -fsanitize=thread -x c++ -o "$build/race" - << 'END'
#include <thread>
int g_shared = 0;
int main() {
  std::thread other([] { ++g_shared; });
  ++g_shared;
  other.join();
}
END
if "$build/race" || ! grep -qsF 'g_shared' "$reports"/*; then
  echo 'the thread sanitizer does not report a race' >&2
  exit 1
fi
rm -f "$reports"/*

result=0
ctest --test-dir "$build" -R '^kiohost_e2e\.' -j $((2 * $(nproc))) --output-on-failure \
  > "$build/tests.log" 2>&1 || result=1
if ((result != 0)); then
  sed -n '/tests passed/,$p' "$build/tests.log" >&2
  echo "$build/tests.log has the rest" >&2
fi
found=("$reports"/*)
if [[ -e ${found[0]} ]]; then
  cat "${found[@]}" >&2
  echo "${#found[@]} processes with reports of the thread sanitizer" >&2
  result=1
fi
if ((result == 0)); then
  printf 'figure: End-to-end tests under the thread sanitizer\t%s\n' \
    "$(sed -n 's/.* tests failed out of //p' "$build/tests.log")"
  printf 'figure: Reports of the thread sanitizer\t0\n'
fi
exit "$result"
