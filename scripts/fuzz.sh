#!/usr/bin/env bash
# Builds the fuzz targets with Clang (libFuzzer, AddressSanitizer, UBSan) in build-fuzz/ and runs
# each for SECONDS (default 20, about three minutes for all seven on two cores), starting from
# the seeds in fuzz/corpus/. Findings are written to build-fuzz/findings/ and fail the script.
#   scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-20}"

bash scripts/setup.sh
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++ -DTARNWICK_FUZZ=ON -DTARNWICK_TESTS=OFF \
  $(command -v ccache >/dev/null && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache) >/dev/null

targets=(product_container product_json intel_hex esp_image slip stk500v2 flasher_args)
cmake --build build-fuzz --parallel "$(nproc)" --target "${targets[@]/#/fuzz_}"

mkdir -p build-fuzz/findings
failed=()
for target in "${targets[@]}"; do
  # The checked-in seeds stay as they are; what the run learns goes to a scratch corpus.
  work="build-fuzz/corpus/$target"
  mkdir -p "$work"
  echo "== $target (${seconds} s)"
  if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    "build-fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -rss_limit_mb=2048 \
    -timeout=10 -print_final_stats=0 -artifact_prefix="build-fuzz/findings/$target-" \
    "$work" "fuzz/corpus/$target" 2>"build-fuzz/$target.log"; then
    tail -n 40 "build-fuzz/$target.log"
    failed+=("$target")
  else
    grep -E "^#[0-9]+ +DONE" "build-fuzz/$target.log" || tail -n 1 "build-fuzz/$target.log"
  fi
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzzing found problems in: ${failed[*]} (inputs in build-fuzz/findings/)" >&2
  exit 1
fi
