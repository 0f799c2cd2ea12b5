#pragma once

#include <string_view>

#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints one line on standard error, printable and of bounded length.
void Complain(std::string_view message);

/// What standard output can show: colour on a terminal, unless NO_COLOR or what TERM says is against it.
Style OutputStyle();

}  // namespace zvcam
