#!/bin/sh
# Each file that CONTRIBUTING.md names exists, and it names each script.
#
#   contributing.sh ROOT
set -eu
cd "$1"
# What is between backquotes, but for the arguments of a command and the files that are yet to be written.
named=$(tr '\n' ' ' <CONTRIBUTING.md | grep -o '`[^`]*`' | tr -d '`' | sed 's/ .*//' |
  grep -E '/|[.](md|txt|json)$' | grep -v NAME | sort -u)
[ "$(echo "$named" | wc -l)" -ge 50 ]
status=0
for path in $named; do # a pattern is a word for each file
  [ -e "$path" ] || {
    echo "CONTRIBUTING.md names $path, which does not exist" >&2
    status=1
  }
done
for script in scripts/* tests/package/check .ci/run; do
  echo "$named" | grep -qx "$script" || {
    echo "CONTRIBUTING.md does not name $script" >&2
    status=1
  }
done
exit $status
