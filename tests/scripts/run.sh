#!/bin/sh
# scripts/run, called from another folder, with a build that takes the given tool: file names are
# relative to where the caller is, and what is built is said on standard error, once.
#
#   run.sh TOOL ROOT
set -eu
export TOOL="$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/bin" "$work/project/scripts" "$work/elsewhere"
cp "$2/scripts/run" "$work/project/scripts"
cp -R "$2/data" "$work/project"
touch "$work/project/CMakePresets.json"
export PATH="$work/bin:$PATH"

program() { # FILE: standard input becomes a program
  { echo '#!/bin/sh' && cat; } >"$1"
  chmod +x "$1"
}
program "$work/project/scripts/install-missing" <<'END'
END
program "$work/bin/cmake" <<'END'
[ ! -e broken ] || { echo 'error: broken' >&2; exit 1; }
build=$PWD/build/run
mkdir -p "$build/tools"
touch "$build/build.ninja"
[ "$1" != --build ] || ln -sf "$TOOL" "$build/tools/phoneme"
END
program "$work/bin/ninja" <<'END'
[ -e "$2/stale" ] && echo '[1/1] Linking' || echo 'ninja: no work to do.'
END

cd "$work/elsewhere"
echo ni3hao3 >words.txt

expect() { # WHAT WANTED FOUND
  if [ "$2" != "$3" ]; then
    printf '%s: expected\n%s\nfound\n%s\n' "$1" "$2" "$3" >&2
    exit 1
  fi
}
run() { # leaves output, messages and status
  status=0
  output=$("$work/project/scripts/run" "$@" 2>"$work/messages") || status=$?
  messages=$(cat "$work/messages")
}
building='scripts/run: building the tool; the first time takes a minute or two'

run convert -q -l mandarin --to codes --input words.txt
expect 'reads where the caller is' '0 2243 1173' "$status $output"
expect 'says that it builds' "$building" "$messages"

run convert -q -l mandarin --to codes --input words.txt --output codes.txt
expect 'writes where the caller is' '0 2243 1173' "$status $(cat codes.txt)"
expect 'has nothing to build' '' "$messages"

run convert -q -l mandarin --to codes xyz3
expect 'the status is that of the tool' 1 "$status"

touch "$work/project/build/run/stale"
run --version
expect 'builds what has changed' "0 $building" "$status $messages"
rm "$work/project/build/run/stale"

touch -d '+1 minute' "$work/project/CMakePresets.json"
run --version
expect 'builds after the presets have changed' "0 $building" "$status $messages"
touch -d '-1 minute' "$work/project/CMakePresets.json"

touch "$work/project/broken" "$work/project/build/run/stale"
run --version
expect 'shows why it cannot build' "1 $building
error: broken" "$status $messages"
rm "$work/project/broken" "$work/project/build/run/stale"

run
expect 'converts the shipped lexicons from anywhere' 3 \
  "$(echo "$output" | grep -c '^== phoneme convert ')"
