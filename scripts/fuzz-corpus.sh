#!/usr/bin/env bash
# Gathers every statement text (and statement piece) that the program and its tests write into the corpus of the
# dialect layer's fuzz driver: tests/fuzz/corpus.txt, one text a line.
set -euo pipefail
cd "$(dirname "$0")/.."
grep -rhoE '"(select|SELECT|Select|insert|INSERT|Insert|update|UPDATE|Update|delete|DELETE|Delete|alter|ALTER|Alter|create|CREATE|drop|DROP|transform|TRANSFORM|Transform|TRANSFORM) [^"]*"' src tests \
    | sed 's/^"//; s/"$//' | grep -v '%[0-9]' | LC_ALL=C sort -u > tests/fuzz/corpus.txt
wc -l tests/fuzz/corpus.txt
