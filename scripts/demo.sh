#!/usr/bin/env bash
# The main job on a fresh machine: install what is needed, build, and run the
# component's demonstration on the embedded default database.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
build=${BUILD_DIR:-$root/build}
db="sqlite:$build/demo/demo.db"
mkdir -p "$build/demo"
"$build/src/app/brenlow" --version
"$build/src/app/brenlow" --db "$db" demo --out "$build/artifacts"
