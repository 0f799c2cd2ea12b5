#pragma once

#include <iosfwd>

#include "analysis/Why.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints where an item comes from, or where the operation gave up that would have published it.
/// @param boot the record that the reason comes from.
void PrintReason(std::ostream& out, const analysis::Reason& reason, const record::BootRecord& boot,
                 const Style& style);

}  // namespace zvcam
