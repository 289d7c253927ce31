#ifndef TOOLS_HELP_H_
#define TOOLS_HELP_H_

/// The prose of the help texts. Every example shows what the tool really prints.

namespace qeo::tool {

inline constexpr char kDescription[] =
    "Phone sets and pronunciation notations of Mandarin, Cantonese and American English.";

inline constexpr char kLanguageChoice[] = "mandarin, cantonese, english or a language id";

inline constexpr char kColumnHelp[] = "Convert field N of tab-separated lines, append the result";

inline constexpr char kFooter[] = R"(Examples:
  $ phoneme convert -l mandarin --to pronunciation "ni3hao3"
  n i 3, h ao 3
  $ phoneme convert -l cantonese --to codes "nei5hou2"
  4035 2382
  $ phoneme convert -l english --to ids "hh ax 0, l ow 1"
  33 16 0 36 23 1

'phoneme convert --help' explains the notations.
Exit status: 0, 1 when a text failed or could not be read or written, 2 for bad usage.)";

inline constexpr char kConvertFooter[] = R"(Notations, each for the Mandarin "ni3hao3":
  text           ni3hao3        pinyin or jyutping, u with diaeresis written v
  syllables      ni3 hao3       cut, with the tone in the language's range; reads back as text
  phones         n i h ao       phone names alone
  codes          2243 1173      row of the syllable table * 10 + tone
  ids            24 35 3 28 43 3
                                a phone is its id + 10; 0 to 9 closes a syllable and is its tone
  pronunciation  n i 3, h ao 3  phone names, then the tone digit, a comma between syllables

Text and codes convert to everything; ids and pronunciation to phones, ids and pronunciation.
English has no syllables: it is read from pronunciation or ids.

Examples:
  $ phoneme convert -l mandarin --to codes "ni3hao3" "Xi'an"
  2243 1173
  3515 25
  $ phoneme convert -l cantonese --from codes --to syllables "4035 2382"
  nei5 hou2
  $ phoneme convert -l english --to phones "hh ax 0, l ow 1"
  hh ax l ow
  $ printf 'hello\tni3hao3\tA1\n' | phoneme convert -l mandarin --to phones --column 2
  hello   ni3hao3 A1      n i h ao
  $ printf 'ni3\nni3 xyz3\nhao3\n' | phoneme convert -l mandarin --to phones
  phoneme: line 2: "ni3 xyz3": unknown syllable "xyz3"
  n i

  h ao

Every line gives one line. One that fails gives an empty result, is told on standard error and
makes the exit status 1. CRLF line ends are kept, and all bytes of the fields passed on.
What the library drops without a failure is dropped here: letters behind the last syllable that
it knows ("hello" is "he"), phones behind the last closing byte of ids.
A language id that the library does not know is served by another language; a note says which.
A text that begins with "-" goes behind "--".)";

inline constexpr char kPhonesFooter[] =
    R"(Columns: the id, its byte in a phone-id sequence, name, type, and the articulatory features of
English phones (vowel or not, vowel kind, height, frontness, rounding, manner, place, voicing).

Example:
  $ phoneme phones -l english | head -n 3
  # id    byte    name    type    features
  0       10      sil     silence -000000-
  1       11      aa      vowel   +l33-000)";

inline constexpr char kSyllablesFooter[] =
    R"(Columns: the row in the syllable table (a syllable code is row * 10 + tone), the spelling without
tone, and the names of the initial and the final ("-" for none).

Example:
  $ phoneme syllables -l mandarin | head -n 3
  # row   syllable        initial final
  0       a       -       a
  1       ai      -       ai)";

}  // namespace qeo::tool

#endif  // TOOLS_HELP_H_
