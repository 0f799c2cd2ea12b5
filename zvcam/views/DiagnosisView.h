#pragma once

#include <iosfwd>
#include <string>

#include "analysis/Diagnosis.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// How a boot ended, in words: "the plug-in was ended by SIGSEGV in OverriderDualCamCalData". Empty where it
/// returned or nobody says.
std::string EndingText(const record::BootRecord& boot);

/// That files lay in a kept root already which the phone did not lay: what is published may rest on them.
/// Empty where there were none.
std::string ForeignFilesText(const record::BootRecord& boot);

/// Prints what a boot tells of its phone, the worst first: at most a screen.
void PrintDiagnosis(std::ostream& out, const analysis::Boot& boot, const analysis::Diagnosis& diagnosis,
                    const Style& style);

/// Prints the diagnosis, and then everything that the boot published: each property, file, tag, hand-over,
/// read and error line.
void PrintEverything(std::ostream& out, const analysis::Boot& boot, const analysis::Diagnosis& diagnosis,
                     const Style& style);

}  // namespace zvcam
