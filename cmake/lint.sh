#!/usr/bin/env bash
# lint.sh [BUILD_DIR]: checks the whole tree: clang-format, clang-tidy, shellcheck. Every finding is
# an error. BUILD_DIR (build/lint) takes the compile databases.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1

folders=(bench cmake examples fuzz host include src tests tools)
build=${1:-build/lint}
failed=()

# Two compile databases hold every source file between them. The bench build compiles the library a
# second time in a way that clang does not know, so only the benchmarks are taken from it.
for preset in dev bench; do
  if ! log=$(cmake --preset "$preset" -B "$build/$preset" 2>&1); then
    echo "$log" >&2
    exit 1
  fi
done
# units PRESET: the files in its database.
units() {
  sed -n "s|^ *\"file\": \"$(pwd -P)/\(.*\)\",*\$|\1|p" "$build/$1/compile_commands.json" | sort -u
}

mapfile -t sources < <(find "${folders[@]}" -name '*.cc' -o -name '*.c' -o -name '*.h' | sort)
mapfile -t units < <(units dev)
mapfile -t bench_units < <(units bench | grep '^bench/')
mapfile -t scripts < <(grep -rlIE '^#!(/usr)?/bin/(env )?(ba)?sh' --exclude-dir=build \
  --exclude-dir=.git . | sort)
for count in ${#sources[@]} ${#units[@]} ${#bench_units[@]} ${#scripts[@]}; do
  if [[ $count -eq 0 ]]; then
    echo "found nothing to check" >&2
    exit 1
  fi
done

echo "clang-format: ${#sources[@]} files"
clang-format --dry-run -Werror "${sources[@]}" || failed+=(clang-format)

# tidy PRESET FILE...
# One file a run: version 14 carries the state of its va_list check from one file to the next.
tidy() {
  local database=$build/$1
  shift
  printf '%s\0' "$@" | xargs -0 -n 1 -P 2 clang-tidy --quiet -p "$database"
}
echo "clang-tidy: $((${#units[@]} + ${#bench_units[@]} + 1)) files"
# The example stands in no database, as it is built against the installed tree.
{
  tidy dev "${units[@]}" || failed+=(clang-tidy)
  tidy bench "${bench_units[@]}" || failed+=(clang-tidy)
  clang-tidy --quiet examples/minimal_host.c -- -std=c99 -Iinclude || failed+=(clang-tidy)
} 2> >(grep -Ev '^[0-9]+ warnings? (and [0-9]+ errors? )?generated\.$' >&2)

echo "shellcheck: ${#scripts[@]} files"
shellcheck "${scripts[@]}" || failed+=(shellcheck)

if [[ ${#failed[@]} -gt 0 ]]; then
  echo "lint: findings of $(printf '%s\n' "${failed[@]}" | sort -u | xargs)" >&2
  exit 1
fi
echo "lint: no findings"
