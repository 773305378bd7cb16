#!/usr/bin/env bash
# Fails when a source file is not formatted as .clang-format says. With --fix, formats.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | xargs clang-format-14 "${mode[@]}"
