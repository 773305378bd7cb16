#!/usr/bin/env bash
# Configures and builds one preset; further arguments are targets.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" ${@:+--target "$@"}
