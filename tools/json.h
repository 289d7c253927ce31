#ifndef TOOLS_JSON_H_
#define TOOLS_JSON_H_

/// JSON as the tool writes it: one object a line, members in the order in which they were added.

#include <nlohmann/json.hpp>
#include <string>

namespace qeo::tool {

using Json = nlohmann::ordered_json;

/// Appends a value on one line. Bytes that are no UTF-8 become U+FFFD.
inline void AppendJsonText(const Json& json, std::string& out) {
  out += json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace qeo::tool

#endif  // TOOLS_JSON_H_
