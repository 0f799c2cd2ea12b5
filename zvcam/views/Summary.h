#pragma once

#include <iosfwd>

#include "record/BootRecord.h"

namespace zvcam {

/// Prints what a boot published for a person at a terminal. Long lists and blobs are shortened, with a count.
void PrintSummary(std::ostream& out, const record::BootRecord& boot);

}  // namespace zvcam
