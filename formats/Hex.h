#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace formats {

/// Upper-case hexadecimal, two characters a byte, nothing between.
std::string UpperHex(std::span<const std::uint8_t> bytes);

/// A number as people write ids: "0x91010021".
/// @param digits at least so many, filled with zeros.
std::string HexNumber(std::uint64_t number, std::size_t digits = 1);

/// The number of a text such as "0x40007" or "7".
/// @return no value for any other text, and for what 32 bits cannot hold.
std::optional<std::uint32_t> ParseNumber(std::string_view text);

/// The bytes of hexadecimal text in either case. White space may stand between bytes, not inside one.
/// @return no value for any other character, or for half a byte.
std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text);

}  // namespace formats
