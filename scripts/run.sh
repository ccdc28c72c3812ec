#!/usr/bin/env bash
# Builds the program and starts it. Arguments go to the program (for example --home DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh
# Paths under the checkout are hashed relative to it, so that the compiler cache serves every clone.
export CCACHE_BASEDIR="$PWD"
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVEL_BUILD_TESTS=OFF >/dev/null
cmake --build build --target orvel -j"$(nproc)"
exec ./build/src/app/orvel "$@"
