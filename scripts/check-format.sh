#!/usr/bin/env bash
# Fails when a C++ file of the tree differs from .clang-format (run
# `scripts/check-format.sh --fix` to format them).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
if ! command -v clang-format >/dev/null 2>&1; then "$root/scripts/install-deps.sh"; fi
mapfile -t files < <(git ls-files '*.cpp' '*.h')
if [[ "${1:-}" == "--fix" ]]; then
    clang-format -i "${files[@]}"
    exit 0
fi
if ! clang-format --dry-run --Werror "${files[@]}"; then
    echo "check-format: the files above differ from .clang-format (scripts/check-format.sh --fix)" >&2
    exit 1
fi
echo "check-format: ${#files[@]} files follow .clang-format"
