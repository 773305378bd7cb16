#!/usr/bin/env bash
# Runs the checks of .clang-tidy over the program's own sources; any finding fails. Needs the release build folder
# configured, not built. Sources are read without the shared precompiled headers, so each must include what it uses.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build/tidy
sed -E 's/-Winvalid-pch -include [^ ]+ //' build/release/compile_commands.json >build/tidy/compile_commands.json
git ls-files 'src/*.cpp' 'cli/*.cpp' 'desktop/*.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy-14 -p build/tidy --quiet --extra-arg=-Wno-unknown-warning-option --warnings-as-errors='*' 2> >(grep -v 'warnings generated' >&2)
