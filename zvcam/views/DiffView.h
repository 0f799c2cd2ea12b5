#pragma once

#include <iosfwd>

#include "analysis/Diff.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints what differs, grouped by property, file, device and tag, and log; "-" leads what the left boot has,
/// "+" what the right one has.
void PrintDifferences(std::ostream& out, const analysis::Differences& differences, const Style& style);

}  // namespace zvcam
