#pragma once

#include <string>
#include <string_view>

namespace zvcam {

/// A text as a field of comma-separated values: printable, and in quotes where it has a comma or a quote.
std::string CsvCell(std::string_view text);

}  // namespace zvcam
