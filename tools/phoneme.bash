# Completion of `phoneme` for bash 4 and newer, which needs no other file: its commands, the options
# of each, and what an option takes. Read it with "source", or install it as "phoneme" in
# share/bash-completion/completions.
# shellcheck shell=bash

# Sets `options` to those of a command. A comma joins two spellings of the same option.
_phoneme_options() {
  local language='-h,--help -l,--language'
  local source='--from --strict --default-tone'
  local reading='--cut --aliases'
  local layout='--format --column --headword'
  local rules='--no-full-width --no-punctuation --no-diaeresis --no-tone-mark --no-neutral-tone
    --no-erhua --no-fused-erhua --no-abbreviation --no-glued --no-lower-case --no-reduced-vowel
    --no-missing-stress --second-stress'
  local files='-i,--input -o,--output --rejects'
  case $1 in
    convert) options="$language --to $source $reading $layout $files -j,--jobs -q,--quiet $rules" ;;
    check) options="$language --to $source $reading $layout --lexicon --json $rules" ;;
    explain) options="$language $reading $rules" ;;
    phones | syllables) options=$language ;;
    '') options='-h,--help --version' ;;
    *) options='' ;;
  esac
}

# Sets `values` to what an option takes: words, "FILE", "ANY" for what nobody can guess, or nothing
# for an option without a value.
_phoneme_values() {
  case $1 in
    -l | --language) values='mandarin cantonese english' ;;
    --from) values='pinyin jyutping arpabet text codes ids pronunciation' ;;
    --to) values='syllables phones toned-phones codes ids pronunciation marks arpabet json tsv' ;;
    --cut) values='whole forward backward none' ;;
    --format) values='lines tsv cedict cmudict kaldi' ;;
    --headword) values='simplified traditional' ;;
    --aliases | -i | --input | -o | --output | --rejects) values=FILE ;;
    --column | --default-tone | -j | --jobs) values=ANY ;;
    *) values='' ;;
  esac
}

_phoneme_offer() { # WORDS BEGINNING
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

# The options that have not been given yet: most are taken once alone.
_phoneme_offer_options() { # GIVEN_WORDS OPTIONS BEGINNING
  local option spelling is_given unused=''
  for option in $2; do
    is_given=''
    for spelling in ${option//,/ }; do
      [[ $1 == *" $spelling "* ]] && is_given=yes
    done
    [[ $is_given ]] || unused+=" ${option//,/ }"
  done
  _phoneme_offer "$unused" "$3"
}

# Lets readline complete a file name, with directories, blanks and "~" in it.
_phoneme_offer_files() { compopt -o default; }

_phoneme() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local given=' ' command='' has_end='' options values i
  COMPREPLY=()
  if [[ $word == '=' ]]; then # readline cuts "--to=codes" in three words
    word=''
  elif [[ $before == '=' ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; ++i)); do
    given+="${COMP_WORDS[i]} "
    [[ ${COMP_WORDS[i]} == -- ]] && has_end=yes
    [[ $command || ${COMP_WORDS[i]} == -* ]] || command=${COMP_WORDS[i]}
  done
  _phoneme_options "$command"
  _phoneme_values "$before"
  if [[ ! $has_end && $values && " ${options//,/ } " == *[[:space:]]"$before"[[:space:]]* ]]; then
    case $values in
      FILE) _phoneme_offer_files ;;
      ANY) ;;
      *) _phoneme_offer "$values" "$word" ;;
    esac
  elif [[ ! $has_end && $word == -* ]]; then
    _phoneme_offer_options "$given" "$options" "$word"
  elif [[ $command == check ]]; then
    _phoneme_offer_files
  elif [[ ! $command && ! $has_end ]]; then
    _phoneme_offer 'convert check explain phones syllables' "$word"
  elif [[ ! $has_end && ! $word ]]; then # a text is anyone's guess
    _phoneme_offer_options "$given" "$options" ''
  fi
}

complete -F _phoneme phoneme
