#!/usr/bin/env bash
# neighbours_test.sh COMPILER LANGUAGE STANDARD INCLUDE_DIR: without the short names, kioapp.h compiles
# beside the headers of libraries that use some of them, whichever comes first. With them it does not.
set -euo pipefail
compiler=$1 language=$2 standard=$3 include_dir=$4

# compiles [OPTION...]: whether the program on standard input does.
compiles() {
  "$compiler" -x "$language" -std="$standard" -pedantic-errors -Wall -Wextra -Werror \
    -Wno-deprecated-declarations -I"$include_dir" "$@" -fsyntax-only -
}

neighbours=(zlib.h openssl/ssl.h openssl/md5.h openssl/evp.h openssl/crypto.h openssl/x509v3.h
  openssl/store.h openssl/ui.h openssl/http.h)
others=$(printf '#include <%s>\n' "${neighbours[@]}")
own='#include <kioapp/kioapp.h>'
use='unsigned long g_sum(void); unsigned long g_sum(void) { return crc32(0, 0, 0); }'
if [[ $language == c++ ]]; then
  others+=$'\n#include <algorithm>\n#include <string>\n#include <vector>\nusing namespace std;'
  use+=' string g_text(const string& text); string g_text(const string& text) { return text + "!"; }'
fi

# in_both_orders [OPTION...]: whether both orders of inclusion compile.
in_both_orders() {
  compiles "$@" <<< "$own"$'\n'"$others"$'\n'"$use" && compiles "$@" <<< "$others"$'\n'"$own"$'\n'"$use"
}

in_both_orders -DKIOAPP_NO_SHORT_NAMES
if in_both_orders 2> /dev/null; then
  echo 'compiles with the short names too: this test finds nothing' >&2
  exit 1
fi
