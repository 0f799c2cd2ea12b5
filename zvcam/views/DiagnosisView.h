#pragma once

#include <iosfwd>

#include "analysis/Diagnosis.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints what a boot tells of its phone, the worst first: at most a screen.
void PrintDiagnosis(std::ostream& out, const analysis::Boot& boot, const analysis::Diagnosis& diagnosis,
                    const Style& style);

/// Prints the diagnosis, and then everything that the boot published: each property, file, tag, hand-over,
/// read and error line.
void PrintEverything(std::ostream& out, const analysis::Boot& boot, const analysis::Diagnosis& diagnosis,
                     const Style& style);

}  // namespace zvcam
