#!/usr/bin/env bash
# build.sh <preset>: builds everything. build.sh --program: builds korvelctl alone, without what tests and windows need;
# build.sh --desktop: korvelctl and the desktop program.
# All share build/release, so that one does not repeat the other's work.
set -euo pipefail
cd "$(dirname "$0")/.."
programs() {
  local desktop=$1
  shift
  cmake --preset release -DKORVEL_TESTS=OFF -DKORVEL_BENCHMARKS=OFF -DKORVEL_DESKTOP="$desktop" >/dev/null
  cmake --build --preset release --target "$@"
}
case $1 in
  --program) programs OFF korvelctl ;;
  --desktop) programs ON korvelctl korvel ;;
  *)
    cmake --preset "$1" -DKORVEL_TESTS=ON -DKORVEL_DESKTOP=ON -DKORVEL_BENCHMARKS=$([[ $1 == asan ]] && echo OFF || echo ON) >/dev/null
    cmake --build --preset "$1"
    ;;
esac
