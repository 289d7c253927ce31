#ifndef TOOLS_HELP_H_
#define TOOLS_HELP_H_

// The prose of the help texts. Every example shows what the tool really prints.

namespace qeo::tool {

inline constexpr char kDescription[] =
    "Phone sets and pronunciation notations of Mandarin, Cantonese and American English.";

inline constexpr char kLanguageChoice[] =
    "mandarin, cantonese, english, a code such as zh-CN, yue or en-US,\nor a language id";

inline constexpr char kFromHelp[] =
    "the input notation: pinyin, jyutping or arpabet (each the default\n"
    "of its language), text, codes, ids or pronunciation";

inline constexpr char kToHelp[] =
    "the output notation: syllables, phones, toned-phones, codes, ids,\n"
    "pronunciation, marks, arpabet, json or tsv";

inline constexpr char kStrictHelp[] =
    "read text, for english pronunciation, as the library itself does,\nwithout rules";

inline constexpr char kDefaultToneHelp[] = "the tone of cantonese syllables without one: 1 to 6";

inline constexpr char kCheckToHelp[] =
    "the output notation to check for, as for convert (default: codes\nand pronunciation)";

inline constexpr char kCutHelp[] =
    "how to cut words without tones: whole (default), forward,\nbackward or none";

inline constexpr char kAliasesHelp[] = "replace spellings by the table in FILE (jyutping)";

inline constexpr char kFormatHelp[] =
    "the input format: lines (default, each a text), tsv, cedict,\ncmudict or kaldi";

inline constexpr char kColumnHelp[] = "the field of tsv to read (default 2); implies --format tsv";

inline constexpr char kHeadwordHelp[] = "the word of cedict: simplified (default) or traditional";

inline constexpr char kOutputHelp[] = "write to FILE, which changes only when all is done";

inline constexpr char kRejectsHelp[] = "write the lines that fail, unchanged, to FILE";

inline constexpr char kLexiconHelp[] =
    "entries are a word and its phones (default --format kaldi):\n"
    "report unknown phones, duplicate entries, phones that never occur";

inline constexpr char kFooter[] = R"(Examples:
  $ phoneme convert -l mandarin --to pronunciation "Nǐ hǎo"
  n i 3, h ao 3
  $ phoneme convert -l cantonese --to codes "nei5hou2"
  4035 2382
  $ phoneme convert -l english --to pronunciation "HH AH0 L OW1"
  hh ax 0, l ow 1

'phoneme COMMAND --help' explains a command.
Exit status: 0, 1 when a text failed, 2 for bad usage, 3 when the work could not be finished.)";

inline constexpr char kConvertFooter[] =
    R"(Rules read what people write, and each can be switched; a text that they cannot place whole fails.
phoneme(1) explains the rules.

Notations, each for "ni3hao3":
  pinyin         Nǐ hǎo         tone marks, corpus habits (jyutping and arpabet alike)
  text           ni3hao3        the library's pinyin or jyutping, u with diaeresis written v
  syllables      ni3 hao3       cut, with the tone in the language's range; reads back as text
  phones         n i h ao       phone names alone
  toned-phones   n i3 h ao3     the tone or stress on the final or vowel
  codes          2243 1173      row of the syllable table * 10 + tone
  ids            24 35 3 28 43 3
                                a phone is its id + 10; 0 to 9 closes a syllable and is its tone
  pronunciation  n i 3, h ao 3  phone names, then the tone digit, a comma between syllables
  marks          nǐ hǎo         pinyin with tone marks
  arpabet        HH AH0 L OW1   of english
  json, tsv                     an object per line; a row per syllable under a heading

Pinyin, jyutping, text and codes convert to everything but arpabet; arpabet, ids and pronunciation to
all but syllables, codes and marks. Marks are of mandarin, arpabet is of english. A line fails when the
target cannot express one of its syllables: a row that names a missing phone (hng, ng and E of mandarin)
where phones are written, a tone that the language does not have and Cantonese without tones where tones
are written (--default-tone sets one), E as a syllable. codes, json and tsv express every syllable,
ids any digit.

Examples:
  $ phoneme convert -l mandarin --to codes "ni3hao3" "Xī'ān"
  2243 1173
  3511 21
  $ phoneme convert -l mandarin --to syllables "yipinguo" "diǎnr" "lu:4"
  yi5 pin5 guo5
  dian3 er5
  lv4
  $ phoneme convert -l cantonese --from codes --to syllables "4035 2382"
  nei5 hou2
  $ printf 'hello\tni3hao3\tA1\n' | phoneme convert -q -l mandarin --to phones --column 2
  hello   ni3hao3 A1      n i h ao
  $ echo '女兒 女儿 [nu:3 er2] /girl/' | phoneme convert -q -l mandarin --format cedict --to ids
  女儿 24 39 3 49 2
  $ printf 'ni3\nni3 hoa3\nhao3\n' | phoneme convert -l mandarin --to phones
  phoneme: line 2: "ni3 hoa3": unknown syllable "hoa3", perhaps "hao3"
  n i

  h ao
  phoneme: 3 lines: 2 converted, 1 failed (unknown syllable 1)

With lines and tsv every line gives one line; one that fails gives an empty result, --to json an object
that says why, --to tsv no row. In tsv the
result is a new last field, and lines that begin with "# " are passed on. cedict, cmudict and kaldi
give "WORD RESULT", without the entries that fail, comments and variant numbers.
What fails is reported on standard error and makes the exit status 1. When reading, writing, memory or
threads fail it is 3, and the files of --output and --rejects stay as they were. A line has at most
1048576 bytes. CRLF line ends are kept, a byte order mark is not.
--strict drops what the library drops: letters after the last syllable that it knows ("hello" is
"he"), phones after the last closing byte of ids. It writes any tone digit in syllables and
pronunciations, but leaves no other gap.
A language id that the library does not know is served by another language, which a note names.
A text that begins with "-" must follow "--".)";

inline constexpr char kCheckFooter[] =
    R"(Prints a line for everything that convert would not place, in the form that editors read:
FILE:LINE:COLUMN: KIND: MESSAGE. With --to it reports the lines that convert fails for this target,
otherwise those that it fails for codes or for pronunciation, which a lexicon needs. Columns count
bytes from 1. Exit status: 0 when all is clean, 1 when a problem was found, 2 for bad usage, 3 when
the check could not be finished.

Examples:
  $ printf 'ni3hao3\nwo3 hoa3\nPK san1\n' >text; phoneme check -l mandarin text
  text:2:5: unknown syllable: "hoa3", perhaps "hao3"
  text:3:1: foreign text: "PK"
  $ printf 'wan2gung1 VQ6\n' | phoneme check -l cantonese --json -
  {"file":"-","line":1,"column":11,"length":3,"severity":"error","kind":"foreign text","message":"\"VQ6\""}
  $ printf 'hi hh ay1\nhi hh ay1\nby b ai1\n' >lex; phoneme check -l english --lexicon lex | cut -c 1-60
  lex:2:1: duplicate entry: "hi" as in line 1
  lex:3:6: unknown phone: "ai"
  lex:3:1: phones that never occur: aa ae ah ao aw ax er eh ey)";

inline constexpr char kExplainFooter[] =
    R"(Shows the rules that were applied, the syllables with their places, tones, phones and codes, how
words without tones can be cut, the problems and their hints, and what the library reads without
rules.

Example:
  $ phoneme explain -l cantonese "wan2gung1" | sed -n '/^syllables/,/^$/p'
  syllables
    offset  bytes  text     syllable  tone    row  code  initial  final  phone ids
         0      4  "wan2"   wan       2 -> 2  564  5642  -        uan    93 2
         4      5  "gung1"  gung      1 -> 1  185  1851  g        ung    19 74 1
)";

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
