#!/usr/bin/env bash
# lint.sh [BUILD_DIR]: checks the whole tree: clang-format, clang-tidy, shellcheck. Every finding is
# an error. BUILD_DIR (build/lint) takes the compile databases.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1

folders=(bench cmake examples fuzz host include src testing tests tools)
build=${1:-build/lint}
failed=()

# Two compile databases hold every source file between them. The bench build compiles the library a
# second time in a way that clang does not know, so only the benchmarks are taken from it. Test
# files are checked several at once, as they are compiled.
for preset in dev bench; do
  if ! log=$(cmake --preset "$preset" -B "$build/$preset" -DKIO_BUILD_FUZZ=ON \
    -DKIO_PRECOMPILE=OFF 2>&1); then
    echo "$log" >&2
    exit 1
  fi
  # An option of GCC that clang refuses.
  sed -i 's/ -fno-tree-pre / /' "$build/$preset/compile_commands.json"
done
# A unit of several files stands in the build folder, and clang-tidy looks for its checks from there.
while read -r config; do
  for preset in dev bench; do
    mkdir -p "$build/$preset/$(dirname "$config")"
    cp "$config" "$build/$preset/$config"
  done
done < <(find .clang-tidy "${folders[@]}" -name .clang-tidy)
# units PRESET: the files in its database.
units() {
  sed -n 's|^ *"file": "\(.*\)",*$|\1|p' "$build/$1/compile_commands.json" | sort -u
}
# members UNIT: the source files of a unit, which are itself or those that it includes.
members() {
  case $1 in
    */Unity/unity_*) sed -n 's|^#include "\(.*\)"$|\1|p' "$1" ;;
    *) echo "$1" ;;
  esac
}
# grouped: the source files that stand in a unit with others.
grouped() {
  for unit in "${units[@]#* }"; do
    [[ $unit != */Unity/unity_* ]] || members "$unit"
  done | sed "s|^$(pwd -P)/||"
}
# lines UNIT: how long it is in all.
lines() {
  members "$1" | xargs cat | wc -l
}

mapfile -t sources < <(find "${folders[@]}" -name '*.cc' -o -name '*.c' -o -name '*.h' | sort)
mapfile -t units < <(
  units dev | sed 's|^|dev |'
  units bench | grep "^$(pwd -P)/bench/" | sed 's|^|bench |'
)
mapfile -t scripts < <({
  grep -rlIE '^#!(/usr)?/bin/(env )?(ba)?sh' --exclude-dir=build --exclude-dir=.git .
  find . -name '*.sh' -not -path './build/*'
} | sort -u)
for count in ${#sources[@]} ${#units[@]} ${#scripts[@]}; do
  if [[ $count -eq 0 ]]; then
    echo "found nothing to check" >&2
    exit 1
  fi
done

echo "clang-format: ${#sources[@]} files"
clang-format --dry-run -Werror "${sources[@]}" || failed+=(clang-format)

# The longest units come first, so that no processor is left with one of them at the end.
mapfile -t units < <(
  for unit in "${units[@]}"; do
    echo "$(lines "${unit#* }") $unit"
  done | sort -k 1,1 -nr | cut -d ' ' -f 2-
)
# In no database: what is built against the installed tree, and what is for the targets alone.
alone=(examples/minimal_host.c tests/target/unaligned.c)
mapfile -t unchecked < <(
  comm -23 <(printf '%s\n' "${sources[@]}" | grep -v '\.h$' | sort) <(
    for unit in "${units[@]}"; do
      members "${unit#* }"
    done | sed "s|^$(pwd -P)/||" | cat - <(printf '%s\n' "${alone[@]}") | sort
  )
)
if [[ ${#unchecked[@]} -gt 0 ]]; then
  printf '%s: in no unit\n' "${unchecked[@]}" >&2
  failed+=(clang-tidy)
fi

# The analyzer passes over what a unit includes: there may be no file in it that it must look at.
if grouped | grep -Ev '^tests/' || grouped | grep '^tests/abi/'; then
  echo "the files above are not analyzed in a unit" >&2
  failed+=(clang-tidy)
fi

echo "clang-tidy: $((${#units[@]} + ${#alone[@]})) units"
# One unit a run: version 14 carries the state of its va_list check from one to the next.
{
  for unit in "${units[@]}"; do
    printf '%s\0' -p "$build/${unit% *}" "${unit#* }"
  done | xargs -0 -n 3 -P 2 clang-tidy --quiet || failed+=(clang-tidy)
  clang-tidy --quiet "${alone[@]}" -- -std=c99 -D_GNU_SOURCE -Iinclude -Itests/abi \
    -Itests/target || failed+=(clang-tidy)
} 2> >(grep -Ev '^[0-9]+ warnings? (and [0-9]+ errors? )?generated\.$' >&2)

echo "shellcheck: ${#scripts[@]} files"
shellcheck -x "${scripts[@]}" || failed+=(shellcheck)

if [[ ${#failed[@]} -gt 0 ]]; then
  echo "lint: findings of $(printf '%s\n' "${failed[@]}" | sort -u | xargs)" >&2
  exit 1
fi
echo "lint: no findings"
