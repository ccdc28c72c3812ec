#!/usr/bin/env bash
# Builds everything with the sanitizers and warnings as errors, then runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh
# Paths under the checkout are hashed relative to it, and the build folder not at all (it only names the
# folder in debug information), so that the compiler cache serves every clone.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake -S . -B build-test -DCMAKE_BUILD_TYPE=Debug -DORVEL_SANITIZE=ON -DORVEL_WERROR=ON >/dev/null
cmake --build build-test -j"$(nproc)"
export QT_QPA_PLATFORM=offscreen ORVEL_NO_SHOW=1
export ASAN_OPTIONS=detect_leaks=0
ctest --test-dir build-test --output-on-failure -j"$(nproc)"
