#!/usr/bin/env bash
# runner_test.sh SOURCE_DIR CTEST: ./test over small suites: what it prints, its exit code, and that
# it leaves nothing. Nothing is built.
# shellcheck disable=SC2016  # other shells expand what stands in single quotes
# shellcheck source=tests/scripts/check.sh
. "$(dirname "$0")/check.sh"
copy_scripts
cd "$work/tree"
REAL_CTEST=$(command -v "$2")
export REAL_CTEST WORK=$work
mkdir "$work/dev" "$work/asan"
stand_in cmake << 'END'
#!/bin/bash
[[ $1 != --build ]] || touch "$WORK/$3.built"
[[ ! -e $WORK/$2.broken || $1 != --preset ]]
END
stand_in ctest << 'END'
#!/bin/bash
shift
exec "$REAL_CTEST" --test-dir "$WORK/$1" --output-on-failure "${@:2}"
END
printf '#!/bin/sh\nexit 0\n' > cmake/packages.sh
printf '#!/bin/sh\nexit $LINT_CODE\n' > cmake/lint.sh
chmod +x cmake/*.sh
PATH=$work/bin:$PATH

# suite PART: the tests of a part, "NAME COMMAND" a line.
suite() {
  local name command
  while read -r name command; do
    printf 'add_test(%s bash -c [==[%s]==])\n' "$name" "$command"
  done > "$work/$1/CTestTestfile.cmake"
}
closing() { tail -n 1 "$work/said"; }
# state PID: of a process; nobody may have asked yet for how one ended.
state() {
  local of
  of=$(sed -n 's/^State:.\(.\).*/\1/p' "/proc/$1/status" 2> /dev/null || true)
  [[ $of == [ZX] || -z $of ]] && echo ended || echo "$of"
}
# final_state PID: of a process that is being killed.
final_state() {
  local i
  for ((i = 0; i < 100; ++i)); do
    [[ $(state "$1") != ended ]] || break
    sleep 0.1
  done
  state "$1"
}
# left: what runs of ./test left where they put the temporary files of the tests.
left() { [[ ! -e $work/where ]] || ls -d "$(< "$work/where")" 2> /dev/null || true; }

run ./test --help
expect 'exit code of --help' 0 "$code"
run ./test --fast
expect 'exit code of a wrong word' 2 "$code"

# Hundreds of tests of one program are one line. Without an option lint is not run.
export LINT_CODE=1
{
  for ((i = 1; i <= 300; ++i)); do
    echo "many_test.Suite.Test/$i true"
  done
  echo "alone echo \$TMPDIR > $work/where"
} | suite dev
suite asan <<< 'many_test true'
run ./test
expect 'exit code' 0 "$code"
expect 'the closing line' '100% tests passed, 0 tests failed out of 302' "$(closing)"
expect 'the lines of programs' '  ok     alone         1 tests
  ok     many_test    1 tests
  ok     many_test    300 tests' "$(grep '^  ok' "$work/said" | sort |
  sed -E 's/ +[0-9.]+ s$//; s/  +([0-9])/    \1/; s/alone    /alone         /')"
expect_in 'where the rest is' 'build/test-dev.log has all of it' "$work/said"
expect 'all of it' 301 "$(grep -c Passed build/test-dev.log)"
expect 'few lines' yes "$([[ $(wc -l < "$work/said") -lt 20 ]] && echo yes)"
expect 'left after success' '' "$(left)"

# The second build begins while the tests of the first one run.
rm -f "$work/asan.built"
suite dev <<< "patient for i in {1..600}; do test ! -e $work/asan.built || exit 0; sleep 0.1; done; exit 1"
run ./test --dev --asan
expect 'exit code of two parts' 0 "$code"

# A failure is shown in full, and what to type next.
suite dev << 'END'
a_test.Suite.Good echo good is silent
a_test.Suite.Bad/1 echo first line; echo '1/2 of a second line'; exit 3
b_test.Suite.Good true
crash kill -SEGV $$
END
run ./test --dev
expect 'exit code of a failure' 1 "$code"
expect 'the closing line of a failure' '50% tests passed, 2 tests failed out of 4' "$(closing)"
expect_in 'the failing test' $'first line\n1/2 of a second line\n' "$work/said"
expect_not_in 'the failing test' 'good is silent' "$work/said"
# Another program may have ended between the two.
expect_in 'its program' $'\n  FAILED a_test                         1 of 2 tests' "$work/said"
expect_in 'the crash' $'\ncrash: ***Exception: SegFault\n' "$work/said"
expect_in 'the names' $'failed in dev:\n  ' "$work/said"
expect_in 'the names' $'\n  a_test.Suite.Bad/1\n' "$work/said"
expect_in 'the next command' "    ctest --preset dev -R '^" "$work/said"

# Two parts: the one that fails counts, wherever it stands.
suite asan <<< 'many_test true'
run ./test
expect 'exit code of one failing part' 1 "$code"
expect 'the closing line of one failing part' '60% tests passed, 2 tests failed out of 5' "$(closing)"

# What a test leaves, a file or a program, is a failure.
suite dev << 'END'
clean true
dirty touch $TMPDIR/left.over; bash -c 'sleep 60; true' $TMPDIR/x > /dev/null 2>&1 & sleep 0.2
END
run ./test --dev
expect 'exit code with something left' 1 "$code"
expect 'the closing line with something left' '66% tests passed, 1 tests failed out of 3' "$(closing)"
expect_in 'what was left' '/left.over' "$work/said"
expect_in 'what was left' ': bash -c sleep 60; true ' "$work/said"
expect 'what was left, after it was told' ended \
  "$(final_state "$(sed -n 's/^process \([0-9]*\): bash -c sleep.*/\1/p' "$work/said")")"

# So is what a test leaves on an emulated target.
mkdir "$work/mips-glibc"
suite mips-glibc <<< 'dirty touch $TMPDIR/left.over'
run ./test --target=mips-glibc
expect 'exit code with something left on a target' 1 "$code"
expect 'the closing line with something left on a target' \
  '50% tests passed, 1 tests failed out of 2' "$(closing)"
expect_in 'what was left on a target' '/left.over' "$work/said"

# Each toolchain is a target by its name.
run ./test --help
expect 'the targets' \
  "$(cd "$source_dir/cmake/toolchains" && printf '%s\n' *-*.cmake | sed 's/\.cmake$//' | sort)" \
  "$(sed -n '/^Targets: /,/\.$/p' "$work/said" | grep -oE '[a-z0-9_]+-[a-z]+' | sort)"

# Parts that fail without a test do not end in a line of success.
suite dev <<< 'clean true'
touch "$work/dev.broken"
run ./test --asan --dev
expect 'exit code of a failed build' 1 "$code"
expect_in 'a failed build' 'FAILED dev           does not build' "$work/said"
expect 'the closing line of a failed build' '50% tests passed, 1 tests failed out of 2' "$(closing)"
rm "$work/dev.broken"
run ./test --dev --lint
expect 'exit code of lint' 1 "$code"
expect 'the closing line of lint' '50% tests passed, 1 tests failed out of 2' "$(closing)"
expect_in 'lint' $'type:\n\n    ./test --lint\n' "$work/said"
LINT_CODE=0 run ./test --lint
expect 'exit code of lint alone' 0 "$code"
: > "$work/dev/CTestTestfile.cmake"
run ./test --dev
expect 'exit code without tests' 1 "$code"
expect 'the closing line without tests' '0% tests passed, 1 tests failed out of 1' "$(closing)"

# Ended in the midst of a test, it ends that and leaves nothing.
suite dev << END
slow touch \$TMPDIR/file; echo \$\$ > $work/slow.new; echo \$TMPDIR > $work/where; mv $work/slow.new $work/slow; sleep 60; true
END
for signal in TERM INT HUP; do
  rm -f "$work/slow"
  # A shell starts what is in its background with SIGINT ignored.
  env --default-signal=INT,HUP ./test --dev > "$work/said" 2>&1 < /dev/null &
  runner=$!
  for ((i = 0; i < 600; ++i)); do
    [[ ! -e $work/slow ]] || break
    sleep 0.1
  done
  kill "-$signal" "$runner"
  code=0
  wait "$runner" || code=$?
  expect "exit code after $signal" 130 "$code"
  expect "the test after $signal" ended "$(final_state "$(< "$work/slow")")"
  expect "left after $signal" '' "$(left)"
done
((failures == 0))
