#!/usr/bin/env bash
# build.sh <preset>: builds everything. build.sh --program: builds korvelctl alone, without what tests need.
# Both share build/release, so that one does not repeat the other's work.
set -euo pipefail
cd "$(dirname "$0")/.."
if [[ $1 == --program ]]; then
  cmake --preset release -DKORVEL_TESTS=OFF -DKORVEL_BENCHMARKS=OFF >/dev/null
  cmake --build --preset release --target korvelctl
else
  cmake --preset "$1" -DKORVEL_TESTS=ON -DKORVEL_BENCHMARKS=$([[ $1 == asan ]] && echo OFF || echo ON) >/dev/null
  cmake --build --preset "$1"
fi
