#pragma once

#include <iosfwd>

#include "analysis/Influence.h"

namespace zvcam {

/// Writes what `PrintInfluence` prints as a page: each input's bytes as a picture, and a table of its ranges.
void WriteInfluencePage(std::ostream& out, const analysis::Influence& influence);

}  // namespace zvcam
