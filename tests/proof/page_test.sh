#!/usr/bin/env bash
# page_test.sh SOURCE_DIR: docs/assurance.md is what tests/proof/page prints; each topic of the steps
# has its text and its figures, and each text its figures.
set -euo pipefail
shopt -s nullglob
cd "$1/tests/proof"
status=0
if ! ./page | diff ../../docs/assurance.md -; then
  echo 'docs/assurance.md is stale: tests/proof/page > docs/assurance.md'
  status=1
fi
topics=(topics/*.md)
topics=("${topics[@]##*/}")
mapfile -t stepped < <(sed -n '/^#/!s/\t.*//p' steps)
for topic in "${topics[@]%.md}" "${stepped[@]}"; do
  for file in "topics/$topic.md" "figures/$topic.tsv"; do
    if [[ ! -s $file ]]; then
      echo "tests/proof/$file is missing"
      status=1
    fi
  done
done
exit "$status"
