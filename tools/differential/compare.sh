#!/usr/bin/env bash
# Compares two built libraries; see usage below.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
usage() {
  cat << 'END'
usage: compare.sh [--seed=N] [--scenarios=N] [--allowed=FILE] PROGRAM OLD NEW

Runs the same scenarios over two libraries, files of libkioapp, by PROGRAM (kio_differential), and
compares all that they did: answers, store calls, commands, files and log messages, console output,
exported data. Prints the first scenario in which they differ.

  --seed=N        chooses the scenarios (1)
  --scenarios=N   how many (100000)
  --allowed=FILE  the differences that are meant (tools/differential/allowed)

Exits with 0 when there is no other difference, 1 when there is one, 2 when it cannot tell.
END
}

fail() {
  echo "compare.sh: $*" >&2
  exit 2
}

seed=1
scenarios=100000
allowed=$here/allowed
files=()
for argument in "$@"; do
  case $argument in
    --seed=*) seed=${argument#*=} ;;
    --scenarios=*) scenarios=${argument#*=} ;;
    --allowed=*) allowed=${argument#*=} ;;
    -h | --help)
      usage
      exit 0
      ;;
    -*)
      usage >&2
      fail "unknown argument '$argument'"
      ;;
    *) files+=("$(realpath -e "$argument" 2> /dev/null)") || fail "no file '$argument'" ;;
  esac
done
[[ ${#files[@]} -eq 3 ]] || {
  usage >&2
  exit 2
}
program=${files[0]}
[[ -r $allowed ]] || fail "no file '$allowed'"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The commands of the allowed differences as one sed script.
awk '
  /^[ \t]*$/ { reason = 0; next }
  /^#/ { reason = 1; next }
  !reason { printf "line %d has no reason before it: %s\n", NR, $0 > "/dev/stderr"; exit 1 }
  {
    at = index($0, ": ")
    if (at == 0) { printf "line %d is no entry: %s\n", NR, $0 > "/dev/stderr"; exit 1 }
    kind = substr($0, 1, at - 1)
    if (kind == "*") kind = ".*"
    printf "/^=== scenario [0-9]+: %s$/,/^=== end$/{\n%s\n}\n", kind, substr($0, at + 2)
    reason = 0
  }' "$allowed" > "$work/allowed.sed" || fail "$allowed is not well written"

for side in old new; do
  library=${files[1]}
  [[ $side == old ]] || library=${files[2]}
  mkdir "$work/$side"
  ln -s "$library" "$work/$side/libkioapp.so.1"
  loaded=$(LD_LIBRARY_PATH=$work/$side "$program" --which) || fail "'$library' cannot be loaded"
  [[ $loaded == "$work/$side/"* ]] || fail "'$loaded' was loaded in place of '$library'"
  unknown=$(nm -D --undefined-only "$library" | awk '$1 == "U" { sub(/@.*/, "", $2); print $2 }' |
    sort | comm -23 - <(grep -v '^#' "$here/libc.allow" | sort) | xargs)
  [[ -z $unknown ]] ||
    fail "'$library' needs what $here/libc.allow does not list: $unknown" \
      "(replace it in libc.cc when it depends on the machine)"
done

# run SIDE ARGUMENT...: runs scenarios over one of the libraries.
run() {
  LD_LIBRARY_PATH=$work/$1 "$program" --seed="$seed" --scenarios="$scenarios" "${@:2}"
}
run old --output="$work/old.txt" &
old_job=$!
run new --output="$work/new.txt" || fail "the scenarios of the new library did not run"
wait "$old_job" || fail "the scenarios of the old library did not run"

# Two empty outputs would be equal, so the old one must be complete. An incomplete new one differs.
lines=$(wc -l < "$work/old.txt")
[[ $lines -eq $scenarios ]] || fail "$lines of $scenarios scenarios ran over the old library"
ended=$(grep -c ended-by-signal "$work/old.txt" || true)
[[ $ended -eq 0 ]] || echo "the old library ended the process in $ended scenarios"

mapfile -t different < <(paste -d '\n' "$work/old.txt" "$work/new.txt" |
  awk 'NR % 2 { line = $0; number = $1; next } $0 != line { print number }')

# show SIDE NUMBER,...: what a library did, without the differences that are allowed.
show() {
  run "$1" --show="$2" | sed -E -f "$work/allowed.sed"
}

# Many at once: with allowed differences, each scenario that differs must be looked at.
chunk=500
if [[ ! -s $work/allowed.sed ]]; then
  chunk=1
fi
for ((begin = 0; begin < ${#different[@]}; begin += chunk)); do
  numbers=$(IFS=, && echo "${different[*]:begin:chunk}")
  show old "$numbers" > "$work/old.shown" 2>&1
  show new "$numbers" > "$work/new.shown" 2>&1
  if cmp -s "$work/old.shown" "$work/new.shown"; then
    if [[ $chunk -eq 1 ]]; then
      fail "scenario $numbers differs and does not when it is shown: the scenarios do not repeat"
    fi
    continue
  fi
  # The first scenario with a line that differs.
  line=$(cmp "$work/old.shown" "$work/new.shown" 2>&1 |
    sed -n 's/.* line \([0-9]*\).*/\1/p' || true)
  number=$(head -n "${line:-1}" "$work/old.shown" | sed -n 's/^=== scenario \([0-9]*\).*/\1/p' |
    tail -n 1)
  number=${number:-${different[begin]}}
  show old "$number" > "$work/old.shown" 2>&1 || true
  show new "$number" > "$work/new.shown" 2>&1 || true
  echo "${#different[@]} of $scenarios scenarios differ; the first is $number:"
  diff -U 12 --label old --label new "$work/old.shown" "$work/new.shown" | cut -c -4000 || true
  cat << END
All of it, inputs included:
  LD_LIBRARY_PATH=DIRECTORY $program --seed=$seed --show=$number
where libkioapp.so.1 of DIRECTORY is ${files[1]} or ${files[2]}
END
  exit 1
done

if [[ ${#different[@]} -gt 0 ]]; then
  echo "$scenarios scenarios: no difference but those allowed, in ${#different[@]} of them"
else
  echo "$scenarios scenarios: no difference"
fi
