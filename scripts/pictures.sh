#!/usr/bin/env bash
# Makes a picture of every window, empty and full, light and dark, at 100 and 200 %, on a screen of 1366x768, into
# build/pictures, and says what is cut there. pictures.sh <preset>: with that build (release).
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-release}
pictures=$PWD/build/pictures

if [[ $preset == release ]]; then
  scripts/install.sh --tests
  cmake --preset release -DKORVEL_TESTS=ON -DKORVEL_DESKTOP=ON >/dev/null
  cmake --build --preset release --target korvel_pictures
fi
rm -rf "$pictures"
status=0
for theme in light dark; do
  for scale in 1 2; do
    # The screen holds as many points at either scale.
    QT_SCALE_FACTOR=$scale xvfb-run -a -s "-screen 0 $((1366 * scale))x$((768 * scale))x24" \
      "build/$preset/tests/desktop/korvel_pictures" "$pictures/$theme-$((scale * 100))" $theme || status=$?
  done
done
echo "As imagens estão em $pictures."
exit $status
