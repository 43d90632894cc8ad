#!/usr/bin/env bash
# Builds the host under the thread sanitizer, in build/threads, and runs the end-to-end tests with it.
# Fails when a test fails, or when the sanitizer reports anything.
set -euo pipefail
cd "$(dirname "$0")/../.."

build=build/threads
reports=$PWD/$build/reports
mkdir -p "$build"
if ! { cmake --preset dev -B "$build" -DKIO_SANITIZE=thread &&
  cmake --build "$build" --target kiohost_e2e; } > "$build/build.log" 2>&1; then
  tail -n 40 "$build/build.log" >&2
  exit 1
fi

export TSAN_OPTIONS="log_path=$reports/report suppressions=$PWD/tests/e2e/threads.suppressions \
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
ctest --test-dir "$build" -R '^kiohost_e2e\.' -j "$(nproc)" --output-on-failure \
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
((result != 0)) || grep 'tests passed' "$build/tests.log"
exit "$result"
