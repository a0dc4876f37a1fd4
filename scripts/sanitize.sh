#!/usr/bin/env bash
# The sanitizer job: builds everything with clang, AddressSanitizer and
# UndefinedBehaviorSanitizer (float-cast-overflow included) into build-sanitize/,
# runs every test on both database backends, then runs each libFuzzer target for
# FUZZ_SECONDS (default 60) over its corpus in fuzz/corpus. Fails on any finding.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${SANITIZE_BUILD_DIR:-$root/build-sanitize}
seconds=${FUZZ_SECONDS:-60}
"$root/scripts/install-deps.sh"
launcher=()
if command -v ccache >/dev/null 2>&1; then launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBRENLOW_SANITIZE=ON \
    -DBRENLOW_FUZZ=ON -DBRENLOW_BENCH=OFF "${launcher[@]}" >/dev/null
cmake --build "$build" -j"$(nproc)"

export QT_QPA_PLATFORM=offscreen
# Every store test runs on both backends here: a skipped MariaDB case fails.
export BRENLOW_REQUIRE_BACKENDS=1
export BRENLOW_ARTIFACTS="$build/artifacts"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export LSAN_OPTIONS=suppressions=$root/scripts/lsan.supp:print_suppressions=0
mkdir -p "$BRENLOW_ARTIFACTS"
"$root/scripts/with-test-mariadb.sh" ctest --test-dir "$build" --output-on-failure -j"$(nproc)"

# Each fuzzer starts from the kept corpus; what it finds new stays in a scratch folder,
# and a crash leaves its input under build-sanitize/fuzz-findings.
findings="$build/fuzz-findings"
mkdir -p "$findings"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0
run_one() {
    local name=$1
    mkdir -p "$scratch/$name"
    if "$build/fuzz/fuzz_$name" -max_total_time="$seconds" -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$findings/$name-" "$scratch/$name" "$root/fuzz/corpus/$name" >"$findings/$name.log" 2>&1; then
        echo "fuzz $name: $(grep -o 'stat::number_of_executed_units: [0-9]*' "$findings/$name.log" | tail -1)"
    else
        echo "fuzz $name: FAILED (see $findings/$name.log)"
        tail -40 "$findings/$name.log"
        return 1
    fi
}
export -f run_one
export build root scratch findings seconds
printf '%s\n' dates numbers id_text_lists vtxt packed_rows register_document xls_reader xlsx_reader \
    capital_document schedules_document |
    xargs -P"$(nproc)" -I{} bash -c 'run_one {}' || status=1
exit $status
