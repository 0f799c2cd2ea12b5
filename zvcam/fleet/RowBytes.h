#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/FleetRows.h"

namespace zvcam {

/// Rows as bytes, on their way from one process of this program to another.
std::string RowBytes(const std::vector<analysis::FleetRow>& rows);

/// Reads them back.
/// @throws std::runtime_error for bytes that hold none.
std::vector<analysis::FleetRow> ReadRowBytes(std::string_view bytes);

}  // namespace zvcam
