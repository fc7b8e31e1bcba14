#!/usr/bin/env bash
# Builds with sanitizers and runs every test; the sound engine once more under the thread sanitizer.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)
# shellcheck source=tools/packages.sh
source "$root/tools/packages.sh"
install_missing "$root/packages.txt" build run test

jobs=$(nproc)
log=$(mktemp)
trap 'rm -f "$log"' EXIT

export QT_QPA_PLATFORM=offscreen
export LC_ALL=C.UTF-8
export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:check_initialization_order=1:allocator_may_return_null=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export LSAN_OPTIONS=suppressions=$root/tests/support/lsan.supp:print_suppressions=0
export TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=$root/tests/support/tsan.supp

cmake -S "$root" --preset asan >/dev/null
cmake --build "$root/build/asan" -j "$jobs"
failed=0
ctest --test-dir "$root/build/asan" --output-on-failure --no-tests=error -j2 2>&1 | tee "$log" || failed=1

cmake -S "$root" --preset tsan >/dev/null
cmake --build "$root/build/tsan" --target test_audio -j "$jobs"
# The thread sanitizer of older compilers loses its way in a widely randomised address space.
fixed=()
if setarch "$(uname -m)" -R true 2>/dev/null; then fixed=(setarch "$(uname -m)" -R); fi
echo "The sound engine under the thread sanitizer:"
if ! SDL_AUDIODRIVER=dummy ${fixed[@]+"${fixed[@]}"} "$root/build/tsan/tests/audio/test_audio" --gtest_brief=1; then
  echo "FAILED under the thread sanitizer"
  failed=1
fi

# Last, what CTest said at its end, and which of its processes' tests failed.
echo
sed -n '/tests passed/,$p' "$log"
awk '$1 == "[" && $2 == "PASSED" {passed += $4} END {print passed + 0 " tests passed"}' \
  "$root/build/asan/Testing/Temporary/LastTest.log"
sed -nE 's/^(\[  FAILED  \] [^ ,]+\.[^ ,]+).*/\1/p; /ERROR: .*Sanitizer/p' "$log" | sort -u
exit "$failed"
