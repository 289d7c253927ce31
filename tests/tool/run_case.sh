#!/bin/sh
# Replays a case file, a transcript of commands and what they give, and shows where the tool differs.
#
#   run_case.sh TOOL CASE DATA_DIRECTORY
#
# In a transcript "$ " is before a command, "> " before each line of its standard output, "! "
# before each line of its standard error, and "exit N" is its status when it is not 0. All other
# lines are for the reader. Commands find the tool as `phoneme`, the real lexicons in $DATA, and an
# empty directory to work in; $LIMITS is not empty where the tool can start with little memory, which
# it cannot under some sanitizers; $FAILING is the library of failing_calls.cc. To accept new results
# after reading them: PHONEME_ACCEPT=1.

set -eu
PATH=$(dirname "$1"):$PATH
case_file=$(realpath "$2")
DATA=$(realpath "$3")
LC_ALL=C
LIMITS=yes
{ (ulimit -v 100000 && phoneme --version); } >/dev/null 2>&1 || LIMITS=
export PATH DATA LC_ALL LIMITS

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/work"
cd "$scratch/work"

prefix_lines() { # marks every line of a file, without a blank after the mark of an empty one
  sed -e "s/^/$1 /" -e "s/^$1 \$/$1/" "$2"
}

commands=0
while IFS= read -r line || [ -n "$line" ]; do
  case $line in
  '$ '*)
    commands=$((commands + 1))
    printf '%s\n' "$line"
    status=0
    sh -c "${line#$ }" >../out 2>../err </dev/null || status=$?
    prefix_lines '>' ../out
    prefix_lines '!' ../err
    [ $status -eq 0 ] || echo "exit $status"
    ;;
  '>'* | '!'* | 'exit '*) ;;
  *) printf '%s\n' "$line" ;;
  esac
done <"$case_file" >../transcript

if [ -n "${PHONEME_ACCEPT:-}" ]; then
  cp ../transcript "$case_file"
fi
if [ $commands -eq 0 ]; then
  echo "no command in $2" >&2
  exit 1
fi
diff -u "$case_file" ../transcript
