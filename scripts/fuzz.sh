#!/usr/bin/env bash
# The long run of the dialect layer's fuzz driver, under AddressSanitizer, UndefinedBehaviorSanitizer and the
# leak checker: one million inputs by default. Arguments go to the driver (--inputs N, --seed S).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake -S . -B build-test -DCMAKE_BUILD_TYPE=Debug -DORVEL_SANITIZE=ON -DORVEL_WERROR=ON >/dev/null
cmake --build build-test -j"$(nproc)" --target jet_fuzz
ASAN_OPTIONS=detect_leaks=1 ./build-test/tests/jet_fuzz --inputs 1000000 --seed 2024 "$@"
