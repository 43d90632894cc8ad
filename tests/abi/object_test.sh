#!/usr/bin/env bash
# object_test.sh READELF NM LIBRARY ALLOWED LIBC: what the library asks of the system that loads it.
# LIBC is the C library that it is built for: uclibc, musl or glibc.
set -euo pipefail
readelf=$1 nm=$2 library=$3 allowed=$4 libc=$5
status=0

fail() {
  echo "$1" >&2
  status=1
}
dynamic=$("$readelf" -dW "$library")
segments=$("$readelf" -lW "$library")

needed=$(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<< "$dynamic")
case $libc in
  uclibc) libc_file=libc.so.0 ;;
  musl) libc_file=libc.so ;;
  *) libc_file=libc.so.6 ;;
esac
if [[ $needed != "$libc_file" ]]; then
  fail "needs other than $libc_file alone, which is $libc: ${needed//$'\n'/ }"
fi

# What the host supplies, and names of libc. Whatever stands for the C++ run time is not allowed,
# even where it lies in libc's neighbourhood.
names=$(sed -e 's/#.*//' -e '/^ *$/d' "$allowed" | sort)
undefined=$("$nm" -D --undefined-only "$library" | awk '{sub(/@.*/, "", $2); print $2}' | sort)
not_allowed=$(comm -13 <(echo "$names") <(echo "$undefined"))
if [[ -z $undefined || -n $not_allowed ]]; then
  fail "undefined names that ${allowed##*/} does not allow: ${not_allowed//$'\n'/ }"
fi
if grep -E '^(_Z|__cxa_|__gxx_|_Unwind_)' <<< "$names"; then
  fail "${allowed##*/} allows the C++ run time"
fi
for name in xget_str xset_str xget_int xset_int xdel; do
  grep -qx "$name" <<< "$undefined" || fail "$name is not left to the host"
done

if grep -q TEXTREL <<< "$dynamic"; then
  fail 'has text relocations'
fi
grep -Eq 'BIND_NOW|Flags:.* NOW' <<< "$dynamic" || fail 'is not bound at loading time'
grep -q GNU_RELRO <<< "$segments" || fail 'has no segment that becomes read-only after relocation'
# A missing note means an executable stack.
stack=$(awk '$1 == "GNU_STACK" {print $(NF - 1)}' <<< "$segments")
[[ $stack == RW ]] || fail "stack flags are '$stack', expected RW"
if awk '$1 == "LOAD"' <<< "$segments" | grep -E ' RWE '; then
  fail 'has a segment that is writable and executable'
fi
exit "$status"
