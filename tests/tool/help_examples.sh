#!/bin/sh
# Runs the examples of every help text and shows where they do not tell the truth.
#
#   help_examples.sh TOOL

set -eu
PATH=$(dirname "$1"):$PATH
LC_ALL=C
export PATH LC_ALL

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

for command in '' convert phones syllables; do
  # An example is a command behind "  $ ", then its output, indented and without tabs.
  phoneme $command --help | sed -n '/^Examples*:$/,/^[^ E]/{/^  /p;/^$/p;}' | sed '$!b;/^$/d' >shown
  grep '^  \$ ' shown | while IFS= read -r line; do
    printf '%s\n' "$line"
    sh -c "${line#  $ }" 2>&1 | expand | sed 's/^./  &/'
  done >real
  examples=$(grep -c '^  \$ ' shown)
  echo "phoneme $command --help: $examples examples"
  [ "$examples" -gt 0 ]
  diff -u shown real
done
