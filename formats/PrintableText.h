#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace formats {

/// The text in UTF-8 that prints on one line and does nothing to a terminal: control characters, marks that
/// turn the direction of writing and bytes that are not UTF-8 stand as "\x1B" and "\u202E".
std::string Printable(std::string_view text);

/// The text with "..." in the place of its middle where it has more than `most` bytes, `most` being at
/// least 3. No character of UTF-8 is cut.
std::string Shortened(std::string_view text, std::size_t most);

/// Takes the first character off a text that is not empty.
/// @return its code point; or -1, and then one byte has been taken that begins no UTF-8 character.
int TakeUtf8(std::string_view& text);

}  // namespace formats
