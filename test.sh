#!/usr/bin/env bash
# Installs what is missing, builds everything and runs all tests. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install.sh --tests
scripts/build.sh release
scripts/run_tests.sh release "$@"
