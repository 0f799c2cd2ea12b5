#pragma once

#include <iosfwd>

#include "analysis/Boot.h"
#include "analysis/Diagnosis.h"

namespace zvcam {

/// Writes a boot as a page to look at: the diagnosis, the modules' memories, streams and zoom scales as
/// pictures, what happened when, and everything that was published and logged in tables.
void WriteBootPage(std::ostream& out, const analysis::Boot& boot, const analysis::Diagnosis& diagnosis);

}  // namespace zvcam
