#!/bin/sh
# scripts/uncovered on reports of two small sources: what is reached, missed, and listed.
#
#   uncovered.sh ROOT
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/scripts" "$work/tests" "$work/tools" "$work/python/phoneme"
cp "$1/scripts/uncovered" "$work/scripts"
printf 'int f() {\n  return 1;\n  return 1;\n}\n' >"$work/tools/f.cc"
printf 'if a:\n    b()\n' >"$work/python/phoneme/g.py"

line='{"gcovr/noncode": false, "line_number"'
cat >"$work/cpp.json" <<END
{"gcovr/format_version": "0.3", "files": [{"file": "tools/f.cc", "lines": [
  $line: 1, "count": 7}, $line: 2, "count": 7}, $line: 3, "count": 0},
  {"gcovr/noncode": true, "line_number": 4, "count": 0}]}]}
END
cat >"$work/python.json" <<'END'
{"files": {"/any/place/g.py": {"executed_lines": [1, 2], "missing_lines": [],
  "executed_branches": [[1, 2]], "missing_branches": [[1, -1]]}}}
END

expect() { # STATUS OUTPUT, given what is listed on standard input
  cat >"$work/tests/uncovered.txt"
  status=0
  output=$("$work/scripts/uncovered" "$work/cpp.json" "$work/python.json") || status=$?
  if [ "$status" -ne "$1" ] || [ "$output" != "$2" ]; then
    printf 'expected %s\n%s\nfound %s\n%s\n' "$1" "$2" "$status" "$output" >&2
    exit 1
  fi
}
reached='cpp.json: 2 of 3 are reached
python.json: 3 of 4 are reached'

expect 1 "$reached
no test reaches:
tools/f.cc: return 1; (2)
python/phoneme/g.py: if a: -> (end)" <<'END'
# nothing
END
expect 0 "$reached" <<'END'
# why
tools/f.cc: return 1; (2)
python/phoneme/g.py: if a: -> (end)
# of sources that are in no report
phoneme/f.cc: return 2;
END
expect 1 "$reached
listed in tests/uncovered.txt, but reached or gone:
python/phoneme/g.py: b()
tools/f.cc: return 2;" <<'END'
tools/f.cc: return 1; (2)
tools/f.cc: return 2;
python/phoneme/g.py: if a: -> (end)
python/phoneme/g.py: b()
END
expect 0 "$reached" <<'END'
tools/f.cc: return 1; (2)
perhaps tools/f.cc: return 1;
python/phoneme/g.py: if a: -> (end)
END
expect 1 "$reached
listed in tests/uncovered.txt, but reached or gone:
tools/f.cc: return 3;" <<'END'
perhaps tools/f.cc: return 1; (2)
perhaps tools/f.cc: return 3;
python/phoneme/g.py: if a: -> (end)
END
