#pragma once

#include <optional>
#include <string_view>

namespace formats {

/// A number as "0.01", "-3" or "1e6", whatever the locale.
/// @return no value for any other text, and for numbers that a double cannot hold.
std::optional<double> ParseDecimal(std::string_view text);

}  // namespace formats
