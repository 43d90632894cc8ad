#!/usr/bin/env bash
# check.sh WORK WHAT [FOLDER]: one check of run.sh, with a line that says how it went, and all that was
# said when it failed. WHAT is a program in the folder of a combination; "names": those that the
# library there exports and leaves undefined; or "smallest": what CMake makes of the options, tried on
# the smallest library. WORK is a folder for what is not kept. Unit tests of the dump are left out where
# the dump is.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
work=$1 what=$2 folder=${3:-smallest}
abi=tests/abi

check_units() {
  local not
  not=$(cat "$folder/$what.fresh")
  if grep -qw DUMP "$folder/left_out"; then
    not+=':*Dump*Test.*'
  fi
  "$folder/$what" --gtest_brief=1 --gtest_filter="-$not"
}

check_names() {
  local library=$folder/libkioapp.so left_out=() options=() part
  read -ra left_out < "$folder/left_out"
  for part in "${left_out[@]}"; do
    options+=("-DKIOAPP_HAS_$part=0")
  done
  bash "$abi/exports_test.sh" nm "$library" src/exports.map "$abi" "${left_out[@]}" &&
    bash "$abi/object_test.sh" readelf nm "$library" "$abi/undefined.allow" glibc &&
    bash "$abi/declared_test.sh" cc nm "$library" include "${options[@]}"
}

check_smallest() {
  local build=build/smallest part options=(-DKIO_BUILD_HOST=OFF -DKIO_BUILD_TESTS=ON)
  if cmake -G Ninja -S . -B "$work/host" -DKIO_WITH_AUTH=OFF > "$work/host.log" 2>&1; then
    echo 'the host is configured without the login'
    return 1
  fi
  grep 'KIO_BUILD_HOST needs the whole library.*KIO_WITH_AUTH' <(tr -s ' \n' ' ' < "$work/host.log") ||
    return 1
  for part in VARIABLES FIRMWARE AUTH DUMP; do
    options+=("-DKIO_WITH_$part=OFF")
  done
  cmake -G Ninja -S . -B "$build" "${options[@]}" &&
    cmake --build "$build" -j 2 --target src/all tests/abi/all &&
    ctest --test-dir "$build" -R '^(abi|install)_' --no-tests=error --output-on-failure
}

log=$(mktemp "$work/log.XXXX")
case $what in
  names) check_names ;;
  smallest) check_smallest ;;
  abi_*) "$folder/$what" ;;
  *) check_units ;;
esac > "$log" 2>&1 < /dev/null && {
  echo "ok     ${folder##*/} $what"
  exit
}
# In one go: others write at the same time. Shells that tests make fail on purpose say nothing here.
printf 'FAILED %s %s\n%s\n' "${folder##*/}" "$what" "$(grep -av '^sh: ' "$log")"
exit 1
