#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace virtualphone {

/// Keeps the keys in the order of the file, so that errors come in that order too.
using Json = nlohmann::ordered_json;

/// A JSON pointer with one more reference token. Control characters are escaped, so that it prints on one
/// line.
std::string ExtendPointer(const std::string& pointer, std::string_view token);

/// Where an error is: "FILE: /pointer" or, for the document as a whole, "FILE".
std::string ErrorPlace(const std::string& fileName, const std::string& pointer);

/// Parses JSON with comments.
/// @throws PhoneFileError for a text that is not JSON or has an object with a key twice.
Json ParseJson(std::string_view text, const std::string& fileName);

}  // namespace virtualphone
