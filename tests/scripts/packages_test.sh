#!/usr/bin/env bash
# packages_test.sh SOURCE_DIR: what is installed, and what is said when that fails. Programs of the
# test's own stand in for those of the system.
# shellcheck source=tests/scripts/check.sh
. "$(dirname "$0")/check.sh"
copy_scripts
cd "$work/tree"
stand_in dpkg-query << 'END'
#!/bin/bash
grep -qxF "${!#}" "$HAVE" && printf installed
END
stand_in id << 'END'
#!/bin/bash
echo "$USER_ID"
END
stand_in apt-get << 'END'
#!/bin/bash
echo "$*" >> "$ASKED"
[[ $* == *install* ]] || exit "$UPDATE_CODE"
[[ $* =~ APT::Status-Fd=([0-9]) ]]
status=${BASH_REMATCH[1]}
echo 'dlstatus:1:3.4:Retrieving file 1 of 2 (9s remaining)' >&"$status"
echo 'dlstatus:2:98.6:Retrieving file 2 of 2 (0s remaining)' >&"$status"
echo 'Unpacking a package'
echo 'pmstatus:cmake:5.2:Installing cmake (amd64)' >&"$status"
# As the real one does, it keeps the descriptor from the scripts of packages.
eval "sh -c 'echo a script of a package' $status>&-" || exit
echo 'pmstatus:wget:100:Installed wget (amd64)' >&"$status"
exit "$INSTALL_CODE"
END
export HAVE=$work/have ASKED=$work/asked USER_ID=0 UPDATE_CODE=0 INSTALL_CODE=0
PATH=$work/bin:$PATH
: > "$HAVE"

run cmake/packages.sh demo ./demo
expect 'exit code' 0 "$code"
expect_in 'the update' ' update' "$ASKED"
expect_in 'the installation' ' install -y --no-install-recommends cmake curl g++ ' "$ASKED"
expect_not_in 'what is installed' nginx "$ASKED"
expect 'the progress' "    3 of 100  Retrieving file 1 of 2
   98 of 100  Retrieving file 2 of 2
    5 of 100  cmake
  100 of 100  wget" "$(tail -n +2 "$work/said" | sed 's/^  //')"

# What is there is not asked for.
sed -n 's/.*--no-install-recommends //p' "$ASKED" | tr ' ' '\n' | grep -vx wget > "$HAVE"
: > "$ASKED"
run cmake/packages.sh demo ./demo
expect 'one package' 1 "$(grep -c -- '--no-install-recommends wget$' "$ASKED")"
echo wget >> "$HAVE"
: > "$ASKED"
run cmake/packages.sh demo ./demo
expect 'exit code with all of them' 0 "$code"
expect 'with all of them' '' "$(cat "$work/said" "$ASKED")"
run cmake/packages.sh test
expect_in 'the packages of the tests' ' install -y --no-install-recommends binutils busybox ' "$ASKED"
run cmake/packages.sh docs
expect_in 'the packages of the pages' ' install -y --no-install-recommends doxygen scdoc' "$ASKED"
run cmake/packages.sh abi
expect_in 'the packages that compare interfaces' ' install -y --no-install-recommends abigail-tools' "$ASKED"
run cmake/packages.sh containers
expect_in 'the packages that make an image' ' catatonit debootstrap jq podman ' "$ASKED"
run cmake/packages.sh packaging
expect_in 'the packages that make packages' ' doxygen scdoc abigail-tools debhelper ' "$ASKED"

# What a target needs: each has a toolchain file.
run cmake/packages.sh target=mipsel-musl
expect_in 'the packages of a target' ' g++-mipsel-linux-gnu libc6-dev-mipsel-cross ' "$ASKED"
for file in "$source_dir"/cmake/toolchains/*-*.cmake; do
  name=${file##*/}
  run cmake/packages.sh "target=${name%.cmake}"
  expect "exit code of $name" 0 "$code"
done
run cmake/packages.sh target=armhf-none
expect 'exit code of no target' 2 "$code"

sed -i '/^wget$/d' "$HAVE"
by_hand='    apt-get update && apt-get install --no-install-recommends wget'
for codes in '100 0' '0 100'; do
  read -r UPDATE_CODE INSTALL_CODE <<< "$codes"
  run cmake/packages.sh demo ./demo
  expect "exit code after $codes" 1 "$code"
  expect_in "what is said after $codes" $'when it works, ./demo does too:\n\n'"$by_hand" "$work/said"
done

# Nobody may install: neither root nor sudo.
mkdir "$work/few"
for program in bash dirname env; do
  ln -s "$(command -v $program)" "$work/few/$program"
done
ln -s "$work"/bin/* "$work/few"
ln -s "$(command -v grep)" "$work/few/grep"
USER_ID=1000
PATH=$work/few run "$(command -v bash)" cmake/packages.sh demo ./demo
expect 'exit code without the right' 1 "$code"
expect_in 'without the right' $'As root, type the following, and then ./demo:\n\n'"$by_hand" \
  "$work/said"
rm "$work/few/apt-get"
PATH=$work/few run "$(command -v bash)" cmake/packages.sh demo ./demo
expect 'exit code on another system' 1 "$code"
expect_in 'on another system' 'This system has no apt-get' "$work/said"

run cmake/packages.sh all
expect 'exit code of a wrong word' 2 "$code"
((failures == 0))
