#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace virtualphone {

struct JsonMember;

/// One value of a JSON text; members stand in the order of the text, so that errors come in that order too.
struct JsonNode {
    using Array = std::vector<JsonNode>;
    using Object = std::vector<JsonMember>;

    /// Integers are signed where they fit, so `std::uint64_t` holds those beyond the signed range alone.
    std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object> value;
};

struct JsonMember {
    std::string key;
    JsonNode node;
};

/// A JSON text that has been read, and the name of the file that it came from.
struct JsonDocument {
    std::string fileName;
    JsonNode root;
};

// What a phone file may hold. Far beyond any phone, and no threat to memory.

inline constexpr std::size_t kMostLevels = 64;
/// In one object or array.
inline constexpr std::size_t kMostElements = 65536;
/// In the whole text.
inline constexpr std::size_t kMostValues = std::size_t{1} << 20;

/// A JSON pointer with one more reference token; a long one loses its middle.
std::string ExtendPointer(const std::string& pointer, std::string_view token);

/// Raises "FILE: /pointer: expected ..., got ..." as a PhoneFileError. Where that is too long for a message,
/// pointer, what was got, file and what was expected lose their middle, in this order.
[[noreturn]] void FailAt(const std::string& fileName, const std::string& pointer, const std::string& expected,
                         const std::string& got);

/// Parses JSON with comments, and stops where the text breaks a limit or its form.
/// @throws PhoneFileError for a text that is not JSON, has an object with a key twice, or is beyond a limit.
JsonDocument ParseJson(std::string_view text, const std::string& fileName);

/// The value as JSON text that people read: what fits into a line stands in one, anything larger has a line
/// for each member or element. Bytes that are not UTF-8 become U+FFFD.
std::string JsonText(const JsonNode& node);

}  // namespace virtualphone
