#!/usr/bin/env bash
# From a fresh machine to a finished audit file: installs what is missing, builds, makes the demonstration company on an
# embedded server below demonstracao/, runs the wizard for it, and says where the file lies and what is in it.
set -euo pipefail
cd "$(dirname "$0")"
year=2025
folder=$PWD/demonstracao

scripts/install.sh
scripts/build.sh --program
mkdir -p "$folder/ficheiros"
export KORVEL_DADOS=$folder/servidores
korvelctl=build/release/cli/korvelctl

"$korvelctl" demo --ano $year --sim
"$korvelctl" --empresa 0001 assistente --ano $year --mes 365 --base C --diarios 00 --pasta "$folder/ficheiros"
