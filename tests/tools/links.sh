#!/usr/bin/env bash
# links.sh SOURCE_DIR: fails unless what the pages link to is there, and the files and folders that
# CONTRIBUTING.md names.
# shellcheck disable=SC2016  # the page has its names in backquotes
set -euo pipefail
cd "$1"
status=0
count=0

# look PAGE FOLDER: whether the names from standard input are there, below the folder.
look() {
  local name
  while read -r name; do
    count=$((count + 1))
    if [[ ! -e $2/$name ]]; then
      echo "$1: there is no $name"
      status=1
    fi
  done
}

for page in *.md docs/*.md; do
  look "$page" "$(dirname "$page")" < <(
    grep -oE '\]\([^)]+\)' "$page" | sed -E 's/^\]\(//; s/\)$//; s/#.*//' | grep -vE '^(https?:.*)?$'
  )
done
# What is in backquotes and has a slash or the end of a file's name. A name without a folder stands in
# that of the name before it.
folder=.
while read -r name; do
  case $name in
    */*) folder=$(dirname "$name") ;;
    *.md | CMakeLists.txt) look CONTRIBUTING.md . <<< "$name" && continue ;;
    *) name=$folder/$name ;;
  esac
  look CONTRIBUTING.md . <<< "$name"
done < <(grep -oE '`[A-Za-z0-9_./-]+`' CONTRIBUTING.md | tr -d '`' |
  grep -E '/|\.(cc|h|md|sh|xml|txt|map|c)$')
if ((count < 60)); then
  echo "found $count names only"
  status=1
fi
exit "$status"
