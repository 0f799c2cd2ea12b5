#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "analysis/Influence.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// "0x20F2 to 0x20F3", "0x0001".
std::string StretchText(const analysis::Stretch& stretch);

/// A stretch that a person reads, with a "*" where it was changed in pieces larger than a byte, as `StepNote`
/// says. For ranges that reach something.
std::string RangeText(const analysis::Range& range);

/// How finely bytes were changed; empty where each was by itself.
std::string StepNote(const analysis::Influence& influence);

/// What is reached, an item each, a tag with all its devices: "ZELVAN_CAMERA_ROLEID of devices 2 and 4/2".
/// @param logToo adds the operations that log otherwise.
std::vector<std::string> EffectTexts(const analysis::Effects& effects, bool logToo);

/// Prints each input: its ranges with what of the published they reach, and what nothing published depends
/// on.
void PrintInfluence(std::ostream& out, const analysis::Influence& influence, const Style& style);

/// Writes the same as JSON (docs/tool.md has the keys).
void WriteInfluence(std::ostream& out, const analysis::Influence& influence);

}  // namespace zvcam
