// Uses the installed notation library; exits with 0 when the answer is right.

#include <notation/notation.h>

int main() { return qeo::notation::NormalizePinyin("nǐ hǎo").text == "ni3 hao3" ? 0 : 1; }
