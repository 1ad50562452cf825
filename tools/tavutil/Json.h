// The --json form of the verbs that print records: one JSON object on standard output, written with
// nlohmann's JSON library (members in the order they were added).
#pragma once

#include "Cli.h"

#include <nlohmann/json.hpp>

#include <string>

namespace cli {

using Json = nlohmann::ordered_json;

// Text of the library (UTF-16) as a JSON string (UTF-8).
inline Json JsonText(const std::wstring& text) { return Json(Narrow(text)); }

// Writes `object` and a line end to standard output.
void OutJson(const Json& object);

}  // namespace cli
