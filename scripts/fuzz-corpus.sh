#!/usr/bin/env bash
# Gathers every statement text (and statement piece) that the program and its tests write into the corpus of the
# dialect layer's fuzz driver: tests/fuzz/corpus.txt, one text a line. Literals that the source continues on the
# next line are joined first, and a place-holder of QString::arg (%1, %2, ...) stands as the value 1.
set -euo pipefail
cd "$(dirname "$0")/.."
find src tests -name '*.cpp' -o -name '*.h' | LC_ALL=C sort | xargs perl -0777 -ne 's/"\s*\n\s*"//g; print "$_\n"' \
    | grep -oE '"(select|SELECT|Select|insert|INSERT|Insert|update|UPDATE|Update|delete|DELETE|Delete|alter|ALTER|Alter|create|CREATE|Create|drop|DROP|transform|TRANSFORM|Transform|TRANSFORM) ([^"\\]|\\.)*"' \
    | sed 's/^"//; s/"$//; s/\\"/"/g; s/%[0-9]/1/g' | grep -v '\\' | LC_ALL=C sort -u > tests/fuzz/corpus.txt
wc -l tests/fuzz/corpus.txt
