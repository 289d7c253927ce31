#!/bin/sh
# scripts/includes on small sources: a clean tree, an include of a folder above, a circle, and a folder
# that is too large.
#
#   includes.sh ROOT
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/phoneme" "$work/notation" "$work/tests"

expect() { # STATUS OUTPUT
  status=0
  output=$("$root/scripts/includes" "$work") || status=$?
  if [ "$status" -ne "$1" ] || [ "$output" != "$2" ]; then
    printf 'expected %s\n%s\nfound %s\n%s\n' "$1" "$2" "$status" "$output" >&2
    exit 1
  fi
}

write() { # FILE, given what it includes, one a line
  file=$1
  shift
  for included in "$@"; do
    printf '#include "%s"\n' "$included"
  done >"$work/$file"
}
root=$1

expect 1 "units: 0, includes: 0, breaches: 0"
write phoneme/a.h
write phoneme/a.cc phoneme/a.h
write phoneme/b.cc phoneme/a.h
write notation/c.h phoneme/a.h utf8proc.h
write tests/t.cc notation/c.h u.h
write tests/u.h
expect 0 "units: 5, includes: 4, breaches: 0"
write phoneme/a.cc phoneme/a.h notation/c.h
expect 1 "phoneme/a includes notation/c, which phoneme may not
a circle: notation/c -> phoneme/a -> notation/c
units: 5, includes: 5, breaches: 2"
write phoneme/a.cc phoneme/b.h
write phoneme/b.cc
write phoneme/b.h phoneme/d.h
write phoneme/d.h phoneme/a.h
expect 1 "a circle: phoneme/a -> phoneme/b -> phoneme/d -> phoneme/a
units: 6, includes: 6, breaches: 1"

rm -r "$work"/*
mkdir -p "$work/tools/io" "$work/tools/commands" "$work/tools/wing" "$work/tests"
write tools/main.cc tools/commands/c.h tools/io/i.h
write tools/commands/c.h tools/io/i.h
write tools/io/i.h
expect 0 "units: 3, includes: 3, breaches: 0"
write tools/io/i.h tools/help.h
write tools/help.h
expect 1 "tools/io/i includes tools/help, which tools/io may not
units: 4, includes: 4, breaches: 1"
rm "$work/tools/help.h"
write tools/io/i.h
write tools/wing/w.cc
expect 1 "tools/wing/w is in a folder of the tool that is not listed
units: 4, includes: 3, breaches: 1"
rm "$work/tools/wing/w.cc"
for number in 02 03 04 05 06 07 08 09 10 11 12 13 14 15; do
  write tools/io/i$number.cc
  write tests/t$number.cc
done
write tools/io/i15.h
write tests/t01.cc
write tests/t16.cc
expect 0 "units: 33, includes: 3, breaches: 0"
write tools/io/i16.cc
expect 1 "tools/io has 16 units, more than 15
units: 34, includes: 3, breaches: 1"
