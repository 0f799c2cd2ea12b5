#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What is asked of a JSON text before it is parsed. The parser holds a token several times over, and all
/// that lies between two tokens once: only a bound on both bounds its memory.
namespace record {

/// Longest text, and longest stretch without a text or number, in bytes.
inline constexpr std::size_t kLongestJsonStretch = std::size_t{16} << 20;
/// Longest number, in characters.
inline constexpr std::size_t kLongestJsonNumber = 64;

/// The first place of a JSON text (comments allowed) that breaks a bound.
struct JsonExcess {
    std::size_t position;  ///< where the text, number or stretch begins
    std::string expected;  ///< "a number of at most 64 characters"
};

/// Reads any bytes; what is no JSON ends no sooner than the parser sees its end.
std::optional<JsonExcess> FindJsonExcess(std::string_view json);

/// "line 3, column 14", both from 1, the column in bytes.
std::string JsonPlace(std::string_view json, std::size_t position);

}  // namespace record
