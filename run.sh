#!/usr/bin/env bash
# From a fresh machine to finished audit files: installs what is missing, builds, makes the demonstration company on an
# embedded server below demonstracao/, runs the wizard for its last year, writes the year's monthly files, and says where
# all files lie and what is in them. With --janela it opens the desktop program on the demonstration company instead.
set -euo pipefail
cd "$(dirname "$0")"
year=2025
folder=$PWD/demonstracao
files=$folder/ficheiros

if [[ ${1:-} == --janela ]]; then
  needs=--desktop builds=--desktop
else
  needs= builds=--program
fi
scripts/install.sh $needs
scripts/build.sh $builds
rm -f "$files"/*_Saft_*.XML
mkdir -p "$files"
export KORVEL_DADOS=$folder/servidores
korvelctl=build/release/cli/korvelctl

# How often an element stands in a file, whose elements follow each other without line ends.
count() { grep -ao "<$1>" "$2" | wc -l; }

if [[ ${1:-} == --janela ]]; then
  # What was done in the company last time stays.
  "$korvelctl" --empresa 0001 periodo listar &>/dev/null || "$korvelctl" demo --ano $year --sim
  # Server, login, company, and a blank password.
  exec build/release/desktop/korvel '(LOCALDB)\KORVEL' sa 0001 ''
fi
echo "== Empresa de demonstração"
"$korvelctl" demo --ano $year --sim
echo "== Assistente: ficheiro integrado de $year"
"$korvelctl" --empresa 0001 assistente --ano $year --mes 365 --base I --diarios 00 --pasta "$files"
echo "== Ficheiros mensais de $year"
"$korvelctl" --empresa 0001 exportar --ano $year --inicio $year-01-01 --fim $year-12-31 --por-meses --pasta "$files"

echo
echo "Os ficheiros estão em $files:"
for month in "" _1 _2 _3 _4 _5 _6 _7 _8 _9 _10 _11 _12; do
  for file in "$files"/*_$year-12-31${month}_Saft_Integrado.XML; do
    printf '  %-58s %5d documentos de venda, %5d lançamentos\n' "$(basename "$file")" \
      "$(count Invoice "$file")" "$(count Transaction "$file")"
  done
done
echo "Cada um traz o plano de contas, clientes, fornecedores, produtos e impostos do ano."
