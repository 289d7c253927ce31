#!/bin/bash
# Shows where the manual page does not tell the truth.
#
#   manual.sh TOOL MANUAL PROJECT
#
# The commands, options and names of the page are those of the tool; its rules and examples give
# what they show. Examples run in an empty directory that has the project's data and examples.

set -euo pipefail
tool=$(realpath "$1")
manual=$(realpath "$2")
project=$(realpath "$3")
PATH=$(dirname "$tool"):$PATH
export LC_ALL=C PATH
failures=0

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/work"
cd "$scratch/work"
ln -s "$project/data" "$project/examples" .

fail() {
  echo "$1" >&2
  failures=$((failures + 1))
}

# same WHAT MANUAL TOOL: compares two lists of words, in any order.
same() {
  [[ $2 && $3 ]] || fail "$1: nothing to compare"
  diff -u --label "manual: $1" --label "tool: $1" <(words "$2") <(words "$3") ||
    failures=$((failures + 1))
}

words() { tr -s '[:space:]' '\n' <<<"$1" | sed '/^$/d' | sort -u; }

section() { sed -n "/^\.Sh $1\$/,/^\.Sh /p" "$manual"; } # NAME

# The options in the macros of a text: "-l" for "Fl l".
flags() { grep -o 'Fl -\?[a-z][a-z-]*\( , -[a-z-]*\)\?' | sed 's/^Fl /-/; s/ , / -/'; }

# The options of a help text, each line as it is spelt.
spellings() { # [COMMAND]
  phoneme "$@" --help | sed -n 's/^  \(-[^ ]*\).*/\1/p'
}

# What the tool says that a value can be.
names() { # OPTION
  { phoneme convert "$1" '?' 2>&1 || true; } | sed -n 's/.* is not one of \([^(]*\).*/\1/p' | tr -d ,
}

check_options() {
  local all rules command forms
  all=$({ spellings && for command in $commands; do spellings "$command"; done; } | tr , '\n')
  rules=$(section RULES | grep '^\.It Fl' | flags)
  same 'options explained' "$(grep '^\.It Fl' "$manual" | flags)" "$all"
  same 'options mentioned' "$(flags <"$manual")" "$all"
  for command in $commands; do
    # The lines of the synopsis between this command and the next, with the rules that it may name.
    forms=$(section SYNOPSIS | sed -n "/^\.Cm $command\$/,/^\.Nm/p")
    grep -q "^\.Ss $command\$" "$manual" || fail "no part about $command"
    same "phoneme $command" \
      "-h $(flags <<<"$forms") $(if grep -q 'Ar rules' <<<"$forms"; then echo "$rules"; fi)" \
      "$(spellings "$command" | cut -d , -f 1)"
  done
}

check_names() {
  local option name codes
  codes=$({ phoneme phones -l '?' 2>&1 || true; } |
    sed -n 's/.*; expected \(.*\) or a language id.*/\1/p')
  same languages "$(sed -n '/^\.Bl -column "cantonese"/,/^\.El/{s/^\.It Cm \([a-z]*\) .*/\1/p
    s/^\.Cm //p;}' "$manual" | tr -d ,)" "$(tr -d '(),' <<<"$codes")"
  for option in --from --to --cut --format --headword; do
    [[ $(names $option) ]] || fail "$option takes no names"
    for name in $(names $option); do
      grep -q "^\.\(It \)\?Cm .*\b$name\b" "$manual" || fail "no word about $option $name"
    done
  done
  same notations "$(section NOTATIONS | sed -n 's/^\.It Cm //p' | sed 's/ Ta.*//; s/ ,//')" \
    "$(names --from) $(names --to)"
  same formats "$(section FORMATS | sed -n 's/^\.It Cm //p')" "$(names --format)"
}

# The members of objects, and the columns.
check_records() {
  local records findings
  records=$(phoneme convert --from pinyin --to json "nǐ" "hoa3" 2>/dev/null || true)
  records+=$(echo 'a ni3' | phoneme convert -q --from pinyin --format kaldi --to json)
  same 'records' "$(section 'JSON AND TSV' | members)" "$(grep -o '"[a-z]*":' <<<"$records" | tr -d '":')"
  same 'columns' "$(section 'JSON AND TSV' | sed '1,/Fl -to Cm tsv/d' | members)" \
    "$(phoneme convert --from pinyin --to tsv '' | tr -d '#')"
  findings=$(echo hoa3 nun3 | phoneme check --from pinyin --json - || true)
  same 'findings' "$(section FINDINGS | members)" \
    "$(grep -o '"[a-z_]*":' <<<"$findings" | tr -d '":')"
}

members() { grep -o 'Va .*' | sed 's/^Va //; s/ *[,.;] */ /g'; }

# Each rule gives what its arrow says, and something else without it.
check_rules() {
  local option notation line text expected to rules=0
  while read -r line; do
    case $line in
      '.It Fl '*)
        read -r _ _ option _ notation _ <<<"${line//,/}"
        ;;
      '.Dl '*)
        rules=$((rules + 1))
        line=${line#.Dl }
        text=${line% \\(-> *}
        expected=${line##* \\(-> }
        to=syllables
        [[ $notation == arpabet ]] && to=pronunciation
        local with=() without=("-$option")
        [[ $option == -no-* ]] || { with=("-$option") without=(); }
        [[ $(convert $to "${with[@]}" "$text") == "$expected" ]] ||
          fail "\"$text\" gives \"$(convert $to "${with[@]}" "$text")\" and not \"$expected\""
        [[ $(convert json "${with[@]}" "$text") != "$(convert json "${without[@]}" "$text")" ]] ||
          fail "\"$text\" does not need the rule of -$option"
        ;;
    esac
  done < <(section RULES)
  echo "$rules rules"
  [[ $rules -gt 0 && $rules -eq $(section RULES | grep -c '^\.It Fl ') ]] ||
    fail 'a rule without an example'
}

# convert TO OPTION... TEXT: reads `notation`.
convert() {
  local result
  result=$(phoneme convert -q --from "$notation" --to "$@" 2>/dev/null) || result+=fails
  echo "$result"
}

# The examples as the page has them, its special signs undone, and as they are.
check_examples() {
  local line command='' examples=0
  section EXAMPLES | sed -n '/^\.Bd/,/^\.Ed/{/^\./!p}' |
    sed "s/\\\\(aq/'/g; s/\\\\(ha/^/g; s/\\\\(ti/~/g; s/\\\\&//g; s/\\\\-/-/g; s/\\\\e/\\\\/g" >../shown
  while IFS= read -r line; do
    if [[ $line == '$ '* ]]; then
      command=${line#'$ '}
    elif [[ $command ]]; then
      command+=$'\n'$line
    fi
    if [[ ! $command ]] || continues "$line"; then
      continue
    fi
    examples=$((examples + 1))
    printf '$ %s\n' "$command"
    sh -c "$command" 2>&1 || true
    command=''
  done <../shown >../real
  echo "$examples examples"
  [[ $examples -gt 0 ]] || fail 'no example'
  diff -u <(squeeze <../shown) <(squeeze <../real) || failures=$((failures + 1))
}

# Tells whether a command goes on in the line below.
continues() { [[ $1 == *'|' || $1 == *\\ ]]; }

squeeze() { sed 's/[ \t][ \t]*/ /g'; } # how many blanks a program sets is its own affair

check_lint() {
  if ! command -v mandoc >/dev/null; then
    echo 'not checked by mandoc, which is missing'
    return
  fi
  mandoc -T lint -W warning "$manual" || fail 'mandoc finds fault'
}

commands=$(phoneme --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
same commands "$(section SYNOPSIS | sed -n 's/^\.Cm //p')" "$commands"
check_options
check_names
check_records
check_rules
check_examples
check_lint
echo "$failures failures"
[[ $failures -eq 0 ]]
