#!/usr/bin/env bash
# Installs missing Debian packages (when run as root), builds the project
# twice (a warnings-as-errors build and a sanitizer build) and runs every
# test with ctest in both.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$(pwd)
JOBS=$(nproc 2>/dev/null || echo 2)

"$ROOT/scripts/install-deps.sh"

build() {  # dir, extra cmake options...
  local dir=$1; shift
  cmake -S "$ROOT" -B "$ROOT/$dir" -DKDVQ_WERROR=ON "$@" >/dev/null
  cmake --build "$ROOT/$dir" -j "$JOBS"
}

build build
build build-asan -DKDVQ_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug

# Tests that need a database server get one from this script.
source "$ROOT/scripts/pg-server.sh"
pg_start || echo "PostgreSQL server not started; server tests will be skipped" >&2
trap pg_stop EXIT

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export LSAN_OPTIONS=suppressions=$ROOT/scripts/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --test-dir "$ROOT/build" --output-on-failure -j "$JOBS" --timeout 600
ctest --test-dir "$ROOT/build-asan" --output-on-failure -j "$JOBS" --timeout 900
# A bounded fuzzing run of the criteria parser and the statement rewriting.
"$ROOT/scripts/fuzz.sh" "${KDVQ_FUZZ_SECONDS:-30}"
echo "All tests passed."
