#pragma once

#include <iosfwd>

#include "analysis/Why.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints where an item comes from, or where the operation gave up that would have published it.
/// @param ordered whether the boot's record keeps platform calls and log lines in one order.
void PrintReason(std::ostream& out, const analysis::Reason& reason, bool ordered, const Style& style);

}  // namespace zvcam
