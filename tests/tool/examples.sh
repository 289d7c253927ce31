#!/bin/sh
# Runs the examples of every help text and of documents, and shows where they do not tell the truth.
#
#   examples.sh TOOL PROJECT DOCUMENT...
#
# An example is a command after "$ ", indented, then its output, indented likewise. Commands run in
# an empty directory that has the project's data and examples.

set -eu
PATH=$(dirname "$1"):$PATH
project=$(realpath "$2")
shift 2
LC_ALL=C
export PATH LC_ALL

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/work"
cd "$scratch/work"
ln -s "$project/data" "$project/examples" .

squeeze() { sed 's/[ \t][ \t]*/ /g'; }

# compare NAME INDENT: runs the examples of a text, and compares all that is shown but empty lines
# and how wide blanks are.
compare() {
  sed -n "/^$2\\$ /,/^[^ ]/{/^$2./p;}" >../shown
  grep "^$2\\$ " ../shown | while IFS= read -r line; do
    printf '%s\n' "$line"
    sh -c "${line#"$2"\$ }" 2>&1 | sed "s/^./$2&/" | grep . || true
  done | squeeze >../real
  squeeze <../shown >../expected
  examples=$(grep -c "^$2\\$ " ../shown) || true
  echo "$1: $examples examples"
  [ "$examples" -gt 0 ]
  diff -u ../expected ../real
}

for command in '' convert check explain phones syllables; do
  phoneme $command --help | compare "phoneme $command --help" '  '
done
for document in "$@"; do
  compare "$document" '    ' <"$project/$document"
done
