#!/usr/bin/env bash
# Configures and builds Brenlow into build/ (BUILD_DIR to change it).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
launcher=()
# A compiler cache, when the machine has one, makes a rebuild cheap.
if command -v ccache >/dev/null 2>&1; then launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} "${launcher[@]}" "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"
