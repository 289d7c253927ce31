#include "tools/conversion/result_records.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "phoneme/phoneme.h"
#include "tools/base/decimal.h"
#include "tools/report/json.h"

namespace qeo::tool {
namespace {

constexpr char kNone[] = "-";

std::string SpellingOf(const sp::SyllableInfo& syllable) {
  return sp::code2py(syllable.language, static_cast<unsigned short>(syllable.code), true);
}

// A syllable in a notation; nothing for a gap.
std::string Written(const notation::Writer& writer, const sp::SyllableInfo& syllable) {
  std::string text;
  writer.Append(syllable, text);
  return text;
}

// ARPAbet may have tabs and the like between the phones of a syllable.
std::string OnOneField(std::string_view text) {
  std::string field(text);
  std::replace_if(
      field.begin(), field.end(), [](char c) { return c >= '\t' && c <= '\r'; }, ' ');
  return field;
}

Json HeadOf(const RecordHead& head) {
  Json json;
  json["line"] = head.line;
  if (!head.word.empty()) json["word"] = head.word;
  json["text"] = head.text;
  return json;
}

Json SyllableOf(const RecordHead& head, notation::Reader& reader, const notation::Writer& ids,
                std::size_t index) {
  const sp::SyllableInfo& syllable = reader.Syllable(index);
  Json json;
  if (!reader.places().empty()) {
    const notation::Range& place = reader.places()[index];
    json["read"] = head.text.substr(place.offset, place.length);
    json["offset"] = place.offset;
    json["length"] = place.length;
  }
  if (reader.has_codes()) {
    json["syllable"] = SpellingOf(syllable);
    json["code"] = syllable.code;
  }
  json["tone"] = notation::HasTone(syllable) ? Json(notation::ToneDigit(syllable)) : Json();
  if (ids.FindGap(syllable) != notation::Gap::kNone) {
    json["phones"] = Json();
    json["ids"] = Json();
    return json;
  }
  json["phones"] = Json::array();
  json["ids"] = Json::array();
  for (const sp::PhoneInfo* phone : syllable.phones) {
    json["phones"].push_back(phone->name);
    json["ids"].push_back(phone->id + sp::kFirstPhoneByte);
  }
  json["ids"].push_back(notation::ToneDigit(syllable));
  return json;
}

Json RuleOf(const notation::Application& application) {
  return {{"rule", notation::RuleName(application.rule)},
          {"offset", application.range.offset},
          {"length", application.range.length}};
}

// Appends a member that is an array of what `element` gives for each index.
template <typename Element>
void AppendMember(const char* name, std::size_t count, std::string& out, Element element) {
  out += '"';
  out += name;
  out += "\":[";
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) out += ',';
    AppendJsonText(element(i), out);
  }
  out += ']';
}

}  // namespace

void AppendRowHeader(std::string& out) {
  out += "# line\tword\tread\toffset\tlength\tsyllable\ttone\tcode\tphones\tids\n";
}

void RecordWriter::AppendRows(const RecordHead& head, notation::Reader& reader,
                              std::string& out) const {
  const auto append = [&out](std::string_view field) {
    out += '\t';
    out += field.empty() ? kNone : field;
  };
  for (std::size_t i = 0; i < reader.size(); ++i) {
    const sp::SyllableInfo& syllable = reader.Syllable(i);
    AppendNumber(head.line, out);
    append(head.word);
    if (reader.places().empty()) {
      append({});
      append({});
      append({});
    } else {
      const notation::Range& place = reader.places()[i];
      append(OnOneField(head.text.substr(place.offset, place.length)));
      append(std::to_string(place.offset));
      append(std::to_string(place.length));
    }
    append(reader.has_codes() ? SpellingOf(syllable) : "");
    append(notation::HasTone(syllable) ? std::to_string(notation::ToneDigit(syllable)) : "");
    append(reader.has_codes() ? std::to_string(syllable.code) : "");
    append(Written(phones_, syllable));
    append(Written(ids_, syllable));
    out += '\n';
  }
}

// A value takes several times the memory of its text, so a long line is never one.
void RecordWriter::AppendJson(const RecordHead& head, notation::Reader& reader,
                              std::string& out) const {
  AppendJsonText(HeadOf(head), out);
  out.back() = ',';  // the object goes on
  AppendMember("syllables", reader.size(), out,
               [&](std::size_t i) { return SyllableOf(head, reader, ids_, i); });
  if (is_written_) {
    out += ',';
    AppendMember("rules", reader.applied().size(), out,
                 [&](std::size_t i) { return RuleOf(reader.applied()[i]); });
  }
  out += '}';
}

void AppendJsonFailure(const RecordHead& head, const Failure& failure, std::string& out) {
  Json json = HeadOf(head);
  json["failure"] = failure.kind;
  json["message"] = failure.message;
  if (failure.place.length != 0) {
    json["offset"] = failure.place.offset;
    json["length"] = failure.place.length;
  }
  AppendJsonText(json, out);
}

}  // namespace qeo::tool
