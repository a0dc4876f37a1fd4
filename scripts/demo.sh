#!/usr/bin/env bash
# The main job on a fresh machine: install what is needed, build, and run the
# component's demonstration on the embedded default database.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
build=${BUILD_DIR:-$root/build}
mkdir -p "$build/artifacts"
"$build/src/app/brenlow" --version
# The embedded default: the SQLite file in the user's data folder.
"$build/src/app/brenlow" demo --out "$build/artifacts" --yes
