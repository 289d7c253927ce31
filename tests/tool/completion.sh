#!/bin/bash
# Shows where the completion for bash does not offer what it should.
#
#   completion.sh TOOL COMPLETION
#
# A table says what is offered for words as readline cuts them. The help of the tool says what its
# commands and options are, and the tool itself which values it takes, so the two never part.

set -euo pipefail
tool=$(realpath "$1")
export LC_ALL=C
failures=0
checks=0

# shellcheck source=/dev/null
source "$2"

# What the completion asks of readline.
compopt() {
  [[ $* == '-o default' ]] || fail "compopt $*"
  files=FILE
}

fail() {
  echo "$1" >&2
  failures=$((failures + 1))
}

# offered WORD...: sets `reply` to what is offered for the last word, sorted.
offered() {
  # shellcheck disable=SC2034 # read by the completion
  COMP_WORDS=(phoneme "$@") COMP_CWORD=$#
  files=''
  COMPREPLY=(stale)
  _phoneme phoneme "${*: -1}" "${*: -2:1}"
  reply=$(sorted "${COMPREPLY[*]} $files")
}

sorted() { tr ' ' '\n' <<<"$1" | sed '/^$/d' | sort | paste -sd ' '; }

expect() { # WHAT EXPECTED
  checks=$((checks + 1))
  [[ $reply == "$(sorted "$2")" ]] || fail "$1: offered \"$reply\", expected \"$(sorted "$2")\""
}

[[ $(complete -p phoneme) == 'complete -F _phoneme phoneme' ]] || fail 'not what bash calls'

# Words typed | what is offered. A blank before the bar begins a new, empty word.
rows=0
while IFS='|' read -r typed expected; do
  [[ $typed ]] || continue
  rows=$((rows + 1))
  read -ra words <<<"$typed"
  [[ $typed == *' ' ]] && words+=('')
  offered "${words[@]}"
  expect "phoneme $typed" "$expected"
done <<'TABLE'
c|convert check
ch|check
conver|convert
x|
--v|--version
-|-h --help --version
ch -|
-h |convert check explain phones syllables
convert --no-f|--no-full-width --no-fused-erhua
convert --form|--format
convert -l|-l
convert --lexicon|
check --le|--lexicon
check --to|--to
check --to m|marks
check --default-tone |
explain --form|
check --fr|--from
phones --f|
phones |-h --help -l --language
syllables --|--help --language
nonsense |
nonsense --|
convert -l |mandarin cantonese english
convert -l m|mandarin
convert --language ca|cantonese
phones -l e|english
convert --language = |mandarin cantonese english
convert --language =|mandarin cantonese english
convert --to = c|codes
convert --to c|codes
convert --to t|toned-phones tsv
convert --to text|
convert --from p|pinyin pronunciation
convert --cut |whole forward backward none
check --cut b|backward
explain --cut f|forward
convert --format c|cedict cmudict
convert --headword |simplified traditional
convert --column |
convert --column 1|
convert -j |
convert --jobs = |
convert -i |FILE
convert --input da|FILE
convert --input = da|FILE
convert -o --out|FILE
convert --rejects |FILE
explain --aliases |FILE
check --aliases |FILE
check |FILE
check data/|FILE
check one |FILE
check --json |FILE
check -- |FILE
check -- -|FILE
check -l mandarin -- -l |FILE
convert ni|
convert -l mandarin --to codes ni3 -i |FILE
convert ni3 --to |syllables phones toned-phones codes ids pronunciation marks arpabet json tsv
convert ni3 --to codes --t|
convert -- |
convert -- -|
convert -- --f|
convert -- -l |
explain -l mandarin -- |
explain -l mandarin -- --|
phones -l mandarin -|-h --help
syllables --language mandarin |-h --help
convert --language mandarin --l|
convert --strict --s|--second-stress
phones --from |-h --help -l --language
phones convert |-h --help -l --language
TABLE

# help_options [COMMAND]: the options of a help text, one a line, each with what it takes.
help_options() {
  local spellings value spelling
  "$tool" "$@" --help | grep -E '^  -' | while read -r spellings value _; do
    [[ $value == [A-Z]* && $value != [A-Z][a-z]* ]] || value=''
    for spelling in ${spellings//,/ }; do
      echo "$spelling $value"
    done
  done
}

# What the tool says that a value can be.
names() { # COMMAND OPTION
  "$tool" "$1" "$2" '?' 2>&1 | sed -n 's/.* is not one of \([^(]*\).*/\1/p' | tr -d ,
}

check_options() { # [COMMAND]
  local option value
  offered "$@" -
  expect "phoneme $* -" "$(help_options "$@" | cut -d ' ' -f 1)"
  while read -r option value; do
    offered "$@" "$option" ''
    case $value in
      FILE) expect "phoneme $* $option" FILE ;;
      NAME) expect "phoneme $* $option" "$(names "$1" "$option")" ;;
      LANG) expect "phoneme $* $option" "$languages" ;;
      N) expect "phoneme $* $option" '' ;;
      '') ;;
      *) fail "phoneme $* --help: a value \"$value\" that the completion does not know" ;;
    esac
  done < <(help_options "$@")
}

# The names alone: who knows a code has typed it.
languages=$({ "$tool" phones -l '?' 2>&1 || true; } |
  sed -n 's/.*; expected \(.*\) or a language id.*/\1/p' | sed 's/ *([^)]*),*//g')
commands=$("$tool" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[[ $languages && $commands ]] || fail 'the help lists no languages or no commands'
offered ''
expect 'phoneme' "$commands"
check_options
for command in $commands; do
  check_options "$command"
done

echo "$rows rows, $checks checks, $failures failures"
[[ $rows -gt 60 && $checks -gt $((rows + 30)) && $failures -eq 0 ]]
