# shellcheck shell=bash
# What ctest says, in fewer words: a line for each test program, failures in full; `source` it after
# progress.sh.

shopt -s extglob

# The program of a test is what stands before the first dot of its name, or all of it.
declare -A program_tests=() program_left=() program_failed=() program_hundredths=()
tests_done=0 tests_all=0 tests_failed=()

# count_programs: learns from the list on standard input, as `ctest -N` prints it, how many tests
# each program has.
count_programs() {
  local line program
  program_tests=() program_left=() program_failed=() program_hundredths=()
  tests_done=0 tests_all=0 tests_failed=()
  while IFS= read -r line; do
    if [[ $line =~ ^\ *Test\ +#[0-9]+:\ ([^ ]+) ]]; then
      program=${BASH_REMATCH[1]%%.*}
      program_tests[$program]=$((${program_tests[$program]:-0} + 1))
      program_left[$program]=${program_tests[$program]}
      tests_all=$((tests_all + 1))
    fi
  done
}

# end_test NAME PASSED HUNDREDTHS: counts a test, and shows its program after the last one of it.
end_test() {
  local program=${1%%.*} word=ok note=
  tests_done=$((tests_done + 1))
  program_left[$program]=$((${program_left[$program]:-1} - 1))
  program_hundredths[$program]=$((${program_hundredths[$program]:-0} + $3))
  if ! $2; then
    tests_failed+=("$1")
    program_failed[$program]=$((${program_failed[$program]:-0} + 1))
  fi
  if [[ ${program_left[$program]} -eq 0 ]]; then
    if [[ -n ${program_failed[$program]:-} ]]; then
      word=FAILED note="${program_failed[$program]} of "
    fi
    end_progress
    printf '  %-6s %-26s %10s tests %6d.%02d s\n' $word "$program" \
      "$note${program_tests[$program]:-1}" $((program_hundredths[$program] / 100)) \
      $((program_hundredths[$program] % 100))
  fi
  if [[ -t 1 ]]; then
    report_progress $tests_done "$tests_all" "$1"
  fi
}

# show_tests LOG: shows the progress of the ctest whose output comes in, and adds all of it to LOG.
# Leaves the count in tests_done and the names in tests_failed.
show_tests() {
  local line name verdict hundredths failed=
  local result='^ *[0-9]+/[0-9]+ +Test +#[0-9]+: ([^ ]+) \.*(.*) ([0-9]+)\.([0-9][0-9]) sec *$'
  # What may stand behind what a failed test said.
  local other='^ +Start +[0-9]+: |^[0-9]+% tests passed'
  while IFS= read -r line; do
    printf '%s\n' "$line" >&7
    if [[ -n $failed && ($line =~ $result || $line =~ $other) ]]; then
      end_test "$failed" false "$hundredths"
      failed=
    fi
    if [[ $line =~ $result ]]; then
      name=${BASH_REMATCH[1]} verdict=${BASH_REMATCH[2]}
      hundredths=$((10#${BASH_REMATCH[3]}${BASH_REMATCH[4]}))
      if [[ $verdict == *' Passed '* ]]; then
        end_test "$name" true $hundredths
      else
        failed=$name
        end_progress
        verdict=${verdict##+([ .])}
        printf '\n%s: %s\n' "$name" "${verdict%%+( )}"
      fi
    elif [[ -n $failed ]]; then
      printf '%s\n' "$line"
    fi
  done 7>> "$1"
  if [[ -n $failed ]]; then
    end_test "$failed" false "$hundredths"
  fi
  end_progress
}
