#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tables/PublishedTags.h"

namespace zvcam {

/// A number as people write ids: "0x91010021".
std::string HexNumber(std::uint32_t number);

/// Bytes as upper-case hexadecimal digits without blanks.
std::string HexBytes(std::span<const std::uint8_t> bytes);

/// Permission bits in four octal digits: "0644".
std::string ModeText(unsigned mode);

/// The shortest decimal text that reads back as the same single-precision number.
std::string FloatText(float number);

/// "int32", "int64", "float", "byte", "memory" or "none".
const char* TypeName(tables::TagItemType type);

/// The text with control characters written out ("\x1B"), so that it does nothing to a terminal.
std::string Printable(std::string_view text);

}  // namespace zvcam
