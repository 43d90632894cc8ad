#!/usr/bin/env bash
# quirks_test.sh SOURCE_DIR: docs/quirks.md tells of the quirks in the sources. quirks.sh looks for
# that, and finds each way in which a copy of the tree is spoilt here.
# shellcheck disable=SC2016  # the page has its names in backquotes
set -euo pipefail
source_dir=$1
check=$(dirname "$0")/quirks.sh

bash "$check" "$source_dir" || exit 1

work=$(mktemp -d "${TMPDIR:-/tmp}/k.XXXXXX")
trap 'rm -rf "$work"' EXIT
cp -r "$source_dir"/{docs,src,host,include,tests} "$work"

# expect COMPLAINT FILE SED_SCRIPT: what is said when the file is edited so.
expect() {
  sed -i "$3" "$work/$2"
  if cmp -s "$source_dir/$2" "$work/$2"; then
    echo "$2 is not changed by $3"
    exit 1
  fi
  local said
  if said=$(bash "$check" "$work"); then
    echo "passed: $2 with $3"
    exit 1
  fi
  if ! grep -qF "$1" <<< "$said"; then
    printf 'expected "%s", got:\n%s\n' "$1" "$said"
    exit 1
  fi
  cp "$source_dir/$2" "$work/$2"
}
page=docs/quirks.md
source=src/settings/dump.cc
expect 'dump-shows-passwords: named in no comment' "$source" '/dump-shows-passwords/d'
expect 'dump-shows-secrets: not on the page' "$source" 's/dump-shows-passwords/dump-shows-secrets/'
expect 'single-precision: named in more than one place' "$source" '1i // Quirk "single-precision": .'
expect '// Quirk "name":' "$source" 's/Quirk "dump-shows-passwords"/Quirk dump-shows-passwords/'
expect 'dump-shows-passwords: not on the page' "$page" '/^| `dump-shows-passwords`/d'
expect 'dump-shows-passwords: listed more than once' "$page" '/^| `dump-shows-passwords`/p'
expect 'there is no DumpTest.IsOfLevelSixs' "$page" 's/DumpTest\.IsOfLevelSix/&s/'
expect 'there is no DumpTest.IsOfLevelSix in dump.cc' "$page" 's/dump_test\.cc/dump.cc/'
expect 'there is no DumpTest.IsOfLevelSix in dump_test.cc' tests/settings/dump_test.cc \
  's/(DumpTest, IsOfLevelSix)/(DumpTest, Record)/'
expect 'there are no rows Site' tests/settings/verify_uplink_test.cc 's/_P(Site, /_P(Sites, /'
expect 'no test holds it' "$page" 's/^\(| `dump-shows-passwords` |.*|\).*|$/\1 |/'
