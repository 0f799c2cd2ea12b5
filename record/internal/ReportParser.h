#pragma once

#include <string_view>

#include "record/internal/ReportJson.h"

namespace record {

/// Parses the JSON text of a report.
/// @throws ReportError for text that is not JSON, or beyond the bounds of a report.
Json ParseReport(std::string_view text);

}  // namespace record
