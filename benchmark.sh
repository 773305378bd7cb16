#!/usr/bin/env bash
# Builds and runs the benchmarks; the arguments are the numbers of ledger lines and of sales documents. Each side is a
# process of its own: what a program takes at its peak is measured from a process that has not grown yet.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install.sh --tests
scripts/build.sh release
build/release/benchmarks/korvel_benchmarks "${1:-1000000}" 0
build/release/benchmarks/korvel_benchmarks 0 "${2:-200000}"
QT_QPA_PLATFORM=offscreen build/release/benchmarks/korvel_grid_benchmark "${1:-1000000}"
