#include "formats/DecimalText.h"

#include <locale>
#include <sstream>
#include <string>

namespace formats {

std::optional<double> ParseDecimal(std::string_view text) {
    // std::from_chars would do, but not every C++ library has it for fractions.
    if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos || text.starts_with('+')) {
        return std::nullopt;
    }
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double number = 0;
    stream >> number;
    if (!stream || stream.peek() != std::istringstream::traits_type::eof()) {
        return std::nullopt;
    }
    return number;
}

}  // namespace formats
