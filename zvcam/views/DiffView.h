#pragma once

#include <iosfwd>

#include "analysis/Diff.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints what differs, grouped by property, file, device and tag, and log; "-" leads what the left boot has,
/// "+" what the right one has.
/// @param everyLine prints the lines of the log that differ however many there are; otherwise many are
/// counted.
void PrintDifferences(std::ostream& out, const analysis::Differences& differences, bool everyLine,
                      const Style& style);

}  // namespace zvcam
