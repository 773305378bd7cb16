#!/usr/bin/env bash
# run_tests.sh <preset> [arguments of ctest]: runs the tests of a build. They work in memory where there is room for them:
# what they write is thrown away, and a disk would make them wait for it twice as long as they run.
set -euo pipefail
cd "$(dirname "$0")/.."
room=4000 # MB
if [[ -z ${TMPDIR:-} && -w /dev/shm && $(df --output=avail -m /dev/shm | tail -1) -gt $room ]]; then
  export TMPDIR=/dev/shm
fi
exec ctest --preset "$@"
