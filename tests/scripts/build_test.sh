#!/usr/bin/env bash
# build_test.sh SOURCE_DIR: how a build is shown, and what is said when it fails. A program of the
# test's own stands in for cmake.
# shellcheck source=tests/scripts/check.sh
. "$(dirname "$0")/check.sh"
copy_scripts
cd "$work/tree"

# Steps of the build that it stands for, and the exit code; configuring says what is in `configured`.
stand_in cmake << 'END'
#!/bin/bash
if [[ $1 == --preset ]]; then
  cat ../configured
  exit "$(< ../configure_code)"
fi
echo "$@" > ../asked
cat ../steps
exit "$(< ../build_code)"
END
PATH=$work/bin:$PATH

# build [TARGET...]: with what cmake does in four files.
build() {
  run bash -euc '. cmake/progress.sh; build_preset dev build/x.log "./it" "$@"' bash "$@"
}
echo '-- ready' > ../configured
echo 0 | tee ../configure_code > ../build_code
for ((i = 1; i <= 250; ++i)); do
  echo "[$i/250] Building CXX object src/a.dir/file$i.cc.o"
done > ../steps
build one two
expect 'exit code' 0 "$code"
expect 'the targets' '--build --preset dev --target one two' "$(< ../asked)"
expect 'the lines' 11 "$(wc -l < "$work/said")"
expect 'the first line' '      1 of 250  file1.cc.o' "$(head -n 1 "$work/said")"
expect 'the last line' '    250 of 250  file250.cc.o' "$(tail -n 1 "$work/said")"
expect 'the lines of the log' 251 "$(wc -l < build/x.log)"
build
expect 'no target' '--build --preset dev' "$(< ../asked)"

# On a terminal the line is written over.
script -qec "$(printf '%q ' bash -euc '. cmake/progress.sh; build_preset dev build/x.log ./it')" \
  /dev/null > "$work/said" < /dev/null
expect 'the lines on a terminal' 250 "$(grep -ao $'\r    ' "$work/said" | wc -l)"
expect 'the line ends on a terminal' 0 "$(wc -l < "$work/said")"

# A compiler's complaint is shown in full, progress is not; a word on what to type ends it.
echo 1 > ../build_code
{
  head -n 3 ../steps
  printf 'FAILED: src/a.cc.o\n/usr/bin/c++ -c src/a.cc\nsrc/a.cc:1:1: error: wrong\n  1 | x\n'
  echo '[4/250] Building CXX object src/b.cc.o'
  echo 'ninja: build stopped: subcommand failed.'
} > ../failed
cp ../failed ../steps
build
expect 'exit code of a failed build' 1 "$code"
expect_in 'a failed build' $'src/a.cc:1:1: error: wrong\n  1 | x\nninja: build stopped' "$work/said"
expect_in 'a failed build' 'All that it said is in build/x.log' "$work/said"
expect_in 'a failed build' $'above, then type:\n\n    ./it\n' "$work/said"
expect_not_in 'a failed build' '[4/250]' "$work/said"

sed 's/error: wrong/fatal error: Killed signal terminated program cc1plus/' ../failed > ../steps
build
expect_in 'without memory' $'Type:\n\n    cmake --build --preset dev -j 1 && ./it\n' "$work/said"
sed 's/error: wrong/fatal error: No space left on device/' ../failed > ../steps
build
expect_in 'without room' $'Make room, then type:\n\n    ./it\n' "$work/said"

echo 1 > ../configure_code
rm ../asked
printf -- '-- looking\nCMake Error: no SQLite\n' > ../configured
build
expect 'exit code of a failed configuration' 1 "$code"
expect_in 'a failed configuration' $'-- looking\nCMake Error: no SQLite\n' "$work/said"
expect 'a failed configuration builds' no "$([[ ! -e ../asked ]] && echo no)"

# A tree that was moved or copied says so; by another name of the same place it builds.
echo 0 | tee ../configure_code > ../build_code
mkdir -p build/dev
for elsewhere in "$work" "$work/gone"; do
  echo "CMAKE_HOME_DIRECTORY:INTERNAL=$elsewhere" > build/dev/CMakeCache.txt
  build
  expect "exit code of a tree from $elsewhere" 1 "$code"
  expect_in 'a moved tree' "made for the tree in $elsewhere, and this one is in $work/tree" "$work/said"
  expect_in 'a moved tree' $'Remove build/ and begin again. Type:\n\n    rm -rf build && ./it\n' \
    "$work/said"
done
ln -s tree ../other
echo "CMAKE_HOME_DIRECTORY:INTERNAL=$work/other" > build/dev/CMakeCache.txt
build
expect 'exit code of the tree by another name' 0 "$code"

# Two at once take turns.
stand_in cmake << 'END'
#!/bin/bash
[[ $1 == --preset ]] || exit 0
mkdir ../alone || exit 1
touch ../begun
while [[ ! -e ../go ]]; do sleep 0.05; done
rmdir ../alone
END
build_quietly() { bash -euc '. cmake/progress.sh; build_preset dev build/x.log ./it' > "$1" 2>&1; }
build_quietly ../first &
first=$!
while [[ ! -e ../begun ]]; do sleep 0.05; done
build_quietly ../second &
second=$!
while ! grep -qs 'another build' ../second; do sleep 0.05; done
touch ../go
code=0
wait "$first" || code=$?
wait "$second" || code=$?
expect 'exit codes of two at once' 0 "$code"
((failures == 0))
