#!/usr/bin/env bash
# Builds the fuzz targets with Clang (libFuzzer, AddressSanitizer, UBSan) in build-fuzz/ and runs
# each for SECONDS (default 45), as many at once as there are cores: about four minutes
# for all nine on two cores. Runs start from the seeds in fuzz/corpus/; what they learn is kept in
# build-fuzz/corpus/. Findings are written to build-fuzz/findings/ and fail the script.
#   scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-45}"

bash scripts/setup.sh
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++ -DTARNWICK_FUZZ=ON -DTARNWICK_TESTS=OFF \
  $(command -v ccache >/dev/null && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache) >/dev/null

targets=(product_container product_json intel_hex esp_image slip stk500v2 flasher_args network_port mdns_announcement)
cmake --build build-fuzz --parallel "$(nproc)" --target "${targets[@]/#/fuzz_}" >build-fuzz/build.log ||
  { tail -n 40 build-fuzz/build.log; exit 1; }

run() {
  local target="$1" work="build-fuzz/corpus/$1" limits=(-rss_limit_mb=2048)
  # A product file must never be read into memory sized by what it claims: any allocation
  # above 64 MB fails the run.
  [ "$target" = product_container ] && limits=(-malloc_limit_mb=64 -rss_limit_mb=512 -max_len=65536)
  mkdir -p "$work"
  ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    "build-fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" "${limits[@]}" -timeout=10 \
    -print_final_stats=0 -artifact_prefix="build-fuzz/findings/$target-" \
    "$work" "fuzz/corpus/$target" >"build-fuzz/$target.log" 2>&1
}

mkdir -p build-fuzz/findings
declare -A jobs=()
for target in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do wait -n || true; done
  run "$target" &
  jobs[$target]=$!
done

failed=()
for target in "${targets[@]}"; do
  if wait "${jobs[$target]}"; then
    echo "$target: $(grep -E '^Done [0-9]+ runs' "build-fuzz/$target.log" | tail -n 1)"
  else
    echo "== $target failed:"
    grep -vE '^#[0-9]+|NEW_FUNC|^INFO' "build-fuzz/$target.log" | head -n 40
    failed+=("$target")
  fi
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzzing found problems in: ${failed[*]} (inputs in build-fuzz/findings/)" >&2
  exit 1
fi
