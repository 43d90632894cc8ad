#!/usr/bin/env bash
# lint.sh [BUILD_DIR]: checks the whole tree: clang-format, clang-tidy, shellcheck. Every finding is
# an error. BUILD_DIR (build/lint) takes the compile databases.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1

folders=(bench cmake ctl examples fuzz host include src testing tests tools)
build=$(realpath -m "${1:-build/lint}")
failed=()

# Two compile databases hold every source file between them. The bench build compiles the library a
# second time in a way that clang does not know, so only the benchmarks are taken from it.
for preset in dev bench; do
  if ! log=$(cmake --preset "$preset" -B "$build/$preset" -DKIO_BUILD_FUZZ=ON \
    -DKIO_PRECOMPILE=OFF -DKIO_TOGETHER=OFF 2>&1); then
    echo "$log" >&2
    exit 1
  fi
done
# Each source file once, with the first of its commands.
jq -s --arg bench "$PWD/bench/" '
  .[0] + (.[1] | map(select(.file | startswith($bench))))
  # Options of GCC that clang refuses.
  | map(.command |= gsub(" (-fno-tree-pre|--param=ggc-\\S+)(?= )"; ""))
  | unique_by(.file)' "$build"/{dev,bench}/compile_commands.json > "$build/files.json" || exit 1
# The files of a program of the host, the tools or the tests are checked as one unit: most of the time
# goes into the headers that all of them include. The analyzer takes what a file includes for a part of
# it, and not for a header, when the name of the file says so.
jq --arg grouped "^$PWD/(ctl|host|tools/(?!differential/)|tests/(?!abi/)).*\\.cc$" --arg units "$build/units" '
  def program: .command | capture(" -o (?<to>\\S+\\.dir)/").to;
  group_by(if .file | test($grouped) then program else .file end)
  | map(if length == 1 then .[0]
        else .[0] as $first | ($first | program) as $program
          | "\($units)/\($program | split("/")[0])/UnifiedSource.\($program | gsub("/"; ".")).cc" as $unit
          | {directory: $first.directory, command: $first.command | sub(" -c \\S+$"; " -c \($unit)"),
             file: $unit, members: map(.file)}
        end)' "$build/files.json" > "$build/units.json" || exit 1
jq 'map(del(.members))' "$build/units.json" > "$build/compile_commands.json" || exit 1
rm -rf "$build/units"
# Each below the settings of its folder.
mkdir -p "$build"/units/{ctl,host,tests,tools} && cp .clang-tidy "$build/units" || exit 1
for folder in ctl host tests; do
  cp $folder/.clang-tidy "$build/units/$folder" || exit 1
done
while IFS=$'\t' read -r unit member; do
  printf '// NOLINTNEXTLINE(bugprone-suspicious-include)\n#include "%s"\n' "$member" >> "$unit"
done < <(jq -r '.[] | select(.members) | .file as $unit | .members[] | "\($unit)\t\(.)"' \
  "$build/units.json")

mapfile -t sources < <(find "${folders[@]}" -name '*.cc' -o -name '*.c' -o -name '*.h' | sort)
# The units of many files begin first, so that none of them runs alone at the end.
mapfile -t units < <(jq -r 'sort_by(-(.members | length))[].file' "$build/units.json")
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

# In no database: what is built against the installed tree, and what is for the targets alone.
alone=(examples/minimal_host.c tests/target/unaligned.c)
mapfile -t unchecked < <(
  comm -23 <(printf '%s\n' "${sources[@]}" | grep -v '\.h$' | sort) \
    <({ jq -r '.[].file' "$build/files.json" | sed "s|^$PWD/||"; printf '%s\n' "${alone[@]}"; } | sort)
)
if [[ ${#unchecked[@]} -gt 0 ]]; then
  printf '%s: in no build\n' "${unchecked[@]}" >&2
  failed+=(clang-tidy)
fi

echo "clang-tidy: $((${#units[@]} + ${#alone[@]})) units"
# One unit a run: version 14 carries the state of its va_list check from one to the next.
{
  printf '%s\0' "${units[@]}" | xargs -0 -n 1 -P 2 clang-tidy --quiet -p "$build" \
    || failed+=(clang-tidy)
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
