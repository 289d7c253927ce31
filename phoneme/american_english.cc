// American English: the phones with their articulatory features, and the builder of their registry
// entry. Phone ids and lexicon numbers are positions in the table: rows are never reordered, merged
// or deduplicated, and new ones go to the end.

#include <iterator>

#include "phoneme/phone_set_builder.h"
#include "phoneme/phone_set_record.h"
#include "phoneme/phoneme.h"

namespace qeo::sp {

using namespace internal;

namespace {

// Silence, the vowels, the consonants. GetPhoneFeature documents the characters of a feature.
// Features do not tell all phones apart: "aw" has those of "ay", and "ow" those of "oy". "sh" is
// alveolar, like "s", and "zh" is palatal.
// clang-format off
constexpr PhoneInfo english_american_phone_list[] = {
    // id  language                   type                name   feature
    {   0, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_SILENCE, "sil", "-000000-" },
    {   1, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "aa",  "+l33-000" },
    {   2, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ae",  "+s31-000" },
    {   3, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ah",  "+s22-000" },
    {   4, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ao",  "+l33+000" },
    {   5, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "aw",  "+d32-000" },
    {   6, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ax",  "+a22-000" },
    {   7, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ay",  "+d32-000" },
    {   8, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "er",  "+l22-r00" },
    {   9, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "eh",  "+s21-000" },
    {  10, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ey",  "+d21-000" },
    {  11, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ih",  "+s11-000" },
    {  12, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "iy",  "+l11-000" },
    {  13, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "ow",  "+d23+000" },
    {  14, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "oy",  "+d23+000" },
    {  15, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "uh",  "+s13+000" },
    {  16, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_FINAL,   "uw",  "+l13+000" },
    {  17, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "b",   "-0000sl+" },
    {  18, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "ch",  "-0000ap-" },
    {  19, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "d",   "-0000sa+" },
    {  20, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "dh",  "-0000fd+" },
    {  21, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "f",   "-0000fb-" },
    {  22, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "g",   "-0000sv+" },
    {  23, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "hh",  "-0000fg-" },
    {  24, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "jh",  "-0000ap+" },
    {  25, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "k",   "-0000sv-" },
    {  26, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "l",   "-0000la+" },
    {  27, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "m",   "-0000nl+" },
    {  28, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "n",   "-0000na+" },
    {  29, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "ng",  "-0000nv+" },
    {  30, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "p",   "-0000sl-" },
    {  31, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "r",   "-0000ra+" },
    {  32, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "s",   "-0000fa-" },
    {  33, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "sh",  "-0000fa-" },
    {  34, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "t",   "-0000sa-" },
    {  35, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "th",  "-0000fd-" },
    {  36, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "v",   "-0000fb+" },
    {  37, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "w",   "-0000rl+" },
    {  38, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "y",   "-0000rp+" },
    {  39, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "z",   "-0000fa+" },
    {  40, LANGUAGE_AMERICAN_ENGLISH, PHONE_TYPE_INITIAL, "zh",  "-0000fp+" },
};
// clang-format on

constexpr int kMisplaced =
    FirstMisplacedRow(english_american_phone_list, LANGUAGE_AMERICAN_ENGLISH);
static_assert(kMisplaced == kNone, "this row's id is not its index, or its language is another");
constexpr int kMistyped = FirstRowOfWrongType(english_american_phone_list);
static_assert(kMistyped == kNone, "this row's type is wrong");
constexpr int kMisnamed = FirstRowOfWrongName(english_american_phone_list);
static_assert(kMisnamed == kNone, "this row's name is empty or too long for the index of names");

}  // namespace

constexpr PhoneSet internal::american_english_phone_set = {
    LANGUAGE_AMERICAN_ENGLISH,
    "english",
    {"en", "eng", "en-US"},
    5,
    {0, 2, -1},
    english_american_phone_list,
    std::size(english_american_phone_list),
    0,
    InitializeAmericanSet,
};

void InitializeAmericanSet(std::map<int, SpMapping>& table) {
  AddPhones(english_american_phone_list, table[LANGUAGE_AMERICAN_ENGLISH]);
}

}  // namespace qeo::sp
