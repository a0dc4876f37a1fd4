#!/usr/bin/env bash
# Everything on a fresh machine: install what is needed, build, start a private
# MariaDB server (unless BRENLOW_TEST_MYSQL names one) and run every test on both
# database backends; then the sanitizer job (scripts/sanitize.sh).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh"
build=${BUILD_DIR:-$root/build}
export QT_QPA_PLATFORM=offscreen
# Every store test runs on both backends here: a skipped MariaDB case fails.
export BRENLOW_REQUIRE_BACKENDS=1
export BRENLOW_ARTIFACTS="$build/artifacts"
mkdir -p "$BRENLOW_ARTIFACTS"
"$root/scripts/with-test-mariadb.sh" ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
# Then the sanitizer job: every test again under AddressSanitizer and
# UndefinedBehaviorSanitizer (clang), and a short run of each fuzzer.
if [[ "${BRENLOW_SKIP_SANITIZE:-}" != 1 ]]; then
    "$root/scripts/sanitize.sh"
fi
