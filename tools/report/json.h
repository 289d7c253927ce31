#ifndef TOOLS_REPORT_JSON_H_
#define TOOLS_REPORT_JSON_H_

// JSON as the tool writes it: one object a line, members in the order in which they were added.

#include <nlohmann/json.hpp>
#include <string>

namespace qeo::tool {

using Json = nlohmann::ordered_json;

/// Appends a value on one line. Bytes that are not UTF-8 become U+FFFD; what a terminal would obey
/// or nobody would see (see ReadGlyph) is escaped as \uNNNN.
void AppendJsonText(const Json& json, std::string& out);

}  // namespace qeo::tool

#endif  // TOOLS_REPORT_JSON_H_
