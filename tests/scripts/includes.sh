#!/bin/sh
# scripts/includes on small sources: a clean tree, an include of a folder above, and a circle.
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
expect 0 "units: 4, includes: 4, breaches: 0"
write phoneme/a.cc phoneme/a.h notation/c.h
expect 1 "phoneme/a includes notation/c, which phoneme may not
a circle: notation/c -> phoneme/a -> notation/c
units: 4, includes: 5, breaches: 2"
write phoneme/a.cc phoneme/b.h
write phoneme/b.cc
write phoneme/b.h phoneme/d.h
write phoneme/d.h phoneme/a.h
expect 1 "a circle: phoneme/a -> phoneme/b -> phoneme/d -> phoneme/a
units: 5, includes: 6, breaches: 1"
