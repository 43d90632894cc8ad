# shellcheck shell=bash
# Building with a line of progress, for the scripts that people run; `source` it.
set -o pipefail

# On a terminal progress is one line that is written over, elsewhere a line for every tenth.
progress_tenth=-1
# report_progress DONE ALL WHAT
report_progress() {
  if [[ -t 1 ]]; then
    local line
    printf -v line '    %*d of %d  %s' ${#2} "$1" "$2" "$3"
    printf '\r%s\e[K' "${line:0:79}"
  elif (($1 * 10 / $2 != progress_tenth)); then
    progress_tenth=$(($1 * 10 / $2))
    printf '    %*d of %d  %s\n' ${#2} "$1" "$2" "$3"
  fi
}
end_progress() {
  progress_tenth=-1
  if [[ -t 1 ]]; then
    printf '\r\e[K'
  fi
}

# The last words of a script that failed: what to type next.
advise() {
  printf '\n%s\n\n    %s\n\n' "$1" "$2" >&2
}

# built_elsewhere PRESET COMMAND: whether the build folder belongs to a tree in another place, as it
# does when a tree was moved or copied; says so.
built_elsewhere() {
  local source=
  if [[ -e build/$1/CMakeCache.txt ]]; then
    source=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "build/$1/CMakeCache.txt")
  fi
  if [[ -z $source || $source -ef . ]]; then
    return 1
  fi
  printf 'build/%s was made for the tree in %s, and this one is in %s.\n' "$1" "$source" "$PWD" >&2
  advise 'Remove build/ and begin again. Type:' "rm -rf build && $2"
}

# show_build LOG: shows the progress of the build whose output comes in, and adds all of it to LOG.
show_build() {
  local line step='^\[([0-9]+)/([0-9]+)\] (.*)$'
  while IFS= read -r line; do
    printf '%s\n' "$line" >&7
    if [[ $line =~ $step ]]; then
      report_progress "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}" "${BASH_REMATCH[3]##*/}"
    fi
  done 7>> "$1"
  end_progress
}

# explain_build LOG PRESET COMMAND: why a build failed, and what to type next.
explain_build() {
  if grep -q '^FAILED: ' "$1"; then
    sed -n '/^FAILED: /,$p' "$1" | grep -vE '^\[[0-9]+/[0-9]+\] ' >&2
  else
    cat "$1" >&2
  fi
  printf '\nThe build failed. All that it said is in %s.\n' "$1" >&2
  if grep -qE 'Killed signal|memory exhausted|Cannot allocate memory' "$1"; then
    advise 'There was too little memory for two compilers. Type:' \
      "cmake --build --preset $2 -j 1 && $3"
  elif grep -q 'No space left on device' "$1"; then
    advise 'The disk is full. Make room, then type:' "$3"
  else
    advise 'Mend what is complained of above, then type:' "$3"
  fi
}

# build_preset PRESET LOG COMMAND [TARGET...]: configures, with `configure_options`, and builds. Two
# scripts that are run at once take turns. COMMAND is what to type to begin again.
configure_options=()
build_preset() {
  local preset=$1 log=$2 command=$3 status
  shift 3
  mkdir -p build
  if built_elsewhere "$preset" "$command"; then
    return 1
  fi
  {
    if ! flock -n 8; then
      echo "    another build of this tree is running; waiting for it"
      flock 8
    fi
    status=0
    cmake --preset "$preset" "${configure_options[@]}" > "$log" 2>&1 8>&- || status=1
    if [[ $status -eq 0 ]]; then
      cmake --build --preset "$preset" ${1+--target "$@"} 2>&1 8>&- | show_build "$log" || status=1
    fi
    if [[ $status -ne 0 ]]; then
      explain_build "$log" "$preset" "$command"
      return 1
    fi
  } 8> "build/$preset.lock"
}
