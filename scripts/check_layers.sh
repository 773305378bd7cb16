#!/usr/bin/env bash
# Fails when a layer reaches beyond itself: desktop/ holds no SQL, src/ and cli/ know nothing of Qt. That no function, and
# so no constructor of a form, is longer than 60 lines is for check_tidy.sh to say.
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0

# Prints the string literals of C++ files that read like SQL; comments are passed over, raw literals read whole.
sql_literals() {
  perl -0777 -ne '
    while (m{//[^\n]*|/\*.*?\*/|\x27(?:[^\x27\\]|\\.)\x27|R"(\w*)\((.*?)\)\1"|"((?:[^"\\\n]|\\.)*)"}gs) {
      my $text = defined $2 ? $2 : $3;
      next unless defined $text && $text =~ /\b(?:select|insert|update|delete|exec|execute|truncate|drop|alter)\b/i;
      my $line = 1 + (substr($_, 0, $-[0]) =~ tr/\n//);
      print "$ARGV:$line: \"$text\"\n";
    }' "$@"
}

sources() { git ls-files --cached --others --exclude-standard -- "$@"; }

found=$(sources 'desktop/*.cpp' 'desktop/*.h' | while read -r file; do sql_literals "$file"; done)
if [[ -n $found ]]; then
  printf 'SQL in the desktop:\n%s\n' "$found" >&2
  failed=1
fi

found=$(sources 'src/*.cpp' 'src/*.h' 'cli/*.cpp' 'cli/*.h' | xargs grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"](Qt?[A-Z]|Qt/)' || true
  sources 'src/*CMakeLists.txt' 'cli/*CMakeLists.txt' | xargs grep -nE 'Qt[0-9]*::' || true)
if [[ -n $found ]]; then
  printf 'Qt below the desktop:\n%s\n' "$found" >&2
  failed=1
fi
exit "$failed"
