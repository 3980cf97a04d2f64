#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for a bounded time
# (SECONDS each, 30 by default), starting from the seed corpus in
# fuzz/corpus/<target>. Exits non-zero when a target crashes, breaks an
# invariant, hangs past the per-input timeout or exceeds the memory limit;
# the input that did it is saved under the build directory's artifacts/.
# Needs the Debian packages clang and libclang-rt-14-dev (libFuzzer).
#   scripts/fuzz.sh [SECONDS]        FUZZ_BUILD_DIR overrides build-fuzz/
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$(pwd)
SECONDS_EACH=${1:-30}
BUILD=${FUZZ_BUILD_DIR:-$ROOT/build-fuzz}
TARGETS=(fuzz_criteria fuzz_sql_rewrite)

if ! [[ $SECONDS_EACH =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: $0 [SECONDS]   (a whole number of seconds per target)" >&2
  exit 2
fi
# clang alone lacks libFuzzer: it comes with the compiler's runtime package.
if ! command -v clang++ >/dev/null || ! ls "$(clang++ -print-runtime-dir)"/libclang_rt.fuzzer-*.a >/dev/null 2>&1; then
  echo "clang++ with libFuzzer not found: install the Debian packages clang and libclang-rt-14-dev" >&2
  exit 2
fi

cmake -S "$ROOT/fuzz" -B "$BUILD" -DCMAKE_CXX_COMPILER=clang++ >/dev/null
cmake --build "$BUILD" -j 2 --target "${TARGETS[@]}"

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

failed=()
for target in "${TARGETS[@]}"; do
  # New inputs go to a scratch corpus in the build directory; the seeds in
  # the source tree are only read.
  work="$BUILD/corpus/$target"
  artifacts="$BUILD/artifacts/$target/"
  mkdir -p "$work" "$artifacts"
  echo "== $target: ${SECONDS_EACH}s"
  if ! "$BUILD/$target" "$work" "$ROOT/fuzz/corpus/$target" \
      -dict="$ROOT/fuzz/$target.dict" \
      -max_total_time="$SECONDS_EACH" -timeout=10 -rss_limit_mb=2048 -max_len=4096 \
      -artifact_prefix="$artifacts" -print_final_stats=1 2>"$BUILD/$target.log"; then
    tail -n 60 "$BUILD/$target.log" >&2
    failed+=("$target")
  fi
  grep -E '^(Done|stat::number_of_executed_units)' "$BUILD/$target.log" || true
done

if [ ${#failed[@]} -ne 0 ]; then
  echo "Fuzzing failed: ${failed[*]} (inputs in $BUILD/artifacts/)" >&2
  exit 1
fi
echo "Fuzzing passed."
