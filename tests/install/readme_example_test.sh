#!/usr/bin/env bash
# readme_example_test.sh README SOURCE: the README's one block of C is the example program.
set -euo pipefail
fence='```'
diff <(sed -n "/^${fence}c\$/,/^$fence\$/{/^$fence/d;p}" "$1") "$2"
