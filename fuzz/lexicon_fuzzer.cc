// The phone lookups, the lexicon functions, ph2tp and ToneAdaptation: all give what the reference
// form gives, and the lexicon's numbers and types are those of the phone that the name looks up.

#include "fuzz/conversions.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
namespace reference = sp::reference;

void ExpectPhone(const sp::PhoneInfo* phone, int index) {
  if (phone == nullptr) return;
  Expect(sp::GetPhoneFeature(phone, index) == reference::GetPhoneFeature(phone, index),
         "the feature is the reference's");
  Expect((index >= 0 && index < 8) || sp::GetPhoneFeature(phone, index) == '\0',
         "there are eight features");
  Expect(sp::GetPhoneInfoById(phone->language, phone->id) == phone, "its id is the phone's");
}

void ExpectLookups(int language, const std::string& name, int number) {
  const sp::PhoneInfo* const by_id = sp::GetPhoneInfoById(language, number);
  const sp::PhoneInfo* const by_name = sp::GetPhoneInfoByDescription(language, name);
  Expect(by_id != nullptr, "an id always has a phone");
  Expect(by_id == reference::GetPhoneInfoById(language, number), "the id's is the reference's");
  Expect(by_name == reference::GetPhoneInfoByDescription(language, name),
         "the name's is the reference's");
  ExpectPhone(by_id, number);
  ExpectPhone(by_name, number);
}

void ExpectLexicon(int language, const char* name) {
  const int type = sp::LexiconEnPhoneTypeStr(name);
  const int id = sp::LexiconEnPhoneId(name);
  Expect(type == reference::LexiconEnPhoneTypeStr(name), "the type is the reference's");
  Expect(id == reference::LexiconEnPhoneId(name), "the number is the reference's");
  Expect(sp::LexiconModulePhoneTypeStr(name, language) ==
             reference::LexiconModulePhoneTypeStr(name, language),
         "the class is the reference's");

  const sp::PhoneInfo* const phone =
      sp::GetPhoneInfoByDescription(sp::LANGUAGE_AMERICAN_ENGLISH, name);
  const bool is_known = std::string_view(phone->name) == name;
  Expect(type == (is_known ? phone->type : 0), "the type is the phone's");
  Expect(id == (is_known ? phone->id + 50 : 255), "the number is the phone's");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const int number = input.ChooseBool() ? input.TakeInt() : static_cast<int>(input.Choose(256));
  const std::string name = input.Rest();
  const auto byte = static_cast<unsigned char>(number & 0xFF);
  const auto tone = static_cast<signed char>(byte);

  ExpectLookups(language, name, number);
  ExpectLexicon(language, name.c_str());
  Expect(sp::ph2tp(language, byte) == reference::ph2tp(language, byte), "ph2tp is the reference's");
  Expect(sp::ToneAdaptation(language, tone) == reference::ToneAdaptation(language, tone),
         "the tone is the reference's");
  return 0;
}
