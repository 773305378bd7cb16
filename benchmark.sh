#!/usr/bin/env bash
# Builds and runs the benchmarks; the argument is the number of ledger lines (default 1000000).
set -euo pipefail
cd "$(dirname "$0")"
scripts/install.sh --tests
scripts/build.sh release
exec build/release/benchmarks/korvel_benchmarks "$@"
