#ifndef TESTS_REFERENCE_REFERENCE_H_
#define TESTS_REFERENCE_REFERENCE_H_

// A second implementation of every conversion, simple and slow, over plain strings and the ordered
// maps. The tests compare the library with it, the benchmarks measure from it.

#include <map>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::sp::reference {

/// The reference's own registry, filled by the library's three builders on first use.
const std::map<int, SpMapping>& PhoneSets();

// Signatures, results and outputs are those of the functions of the same name in phoneme/phoneme.h.

int py2ph(int language, const std::string& text, std::vector<SyllableInfo>& syllables);
int py2code(int language, const std::string& text, std::vector<unsigned short>& codes);
int pyw2py(int language, const std::string& word, std::vector<std::string>& syllables,
           bool backward);
signed char ToneAdaptation(int language, signed char tone);

int code2ph(int language, unsigned short code, SyllableInfo& syllable);
std::string code2py(int language, unsigned short code, bool with_tone);

int pr2ph(int language, const std::string& pronunciation, std::vector<SyllableInfo>& syllables);
int pr2ph(int language, const std::string& pronunciation, std::vector<unsigned char>& phone_ids);
int ph2ph(int language, const std::vector<unsigned char>& phone_ids,
          std::vector<SyllableInfo>& syllables);
int ph2tp(int language, unsigned char phone_id);

const PhoneInfo* GetPhoneInfoById(int language, int id);
const PhoneInfo* GetPhoneInfoByDescription(int language, const std::string& name);
char GetPhoneFeature(const PhoneInfo* phone, int index);

int LexiconEnPhoneTypeStr(const char* phone);
int LexiconEnPhoneId(const char* phone);
int LexiconModulePhoneTypeStr(const char* phone, int language);

}  // namespace qeo::sp::reference

#endif  // TESTS_REFERENCE_REFERENCE_H_
