#pragma once

#include "analysis/InfluenceSearch.h"
#include "supervisor/BootPool.h"

namespace zvcam {

/// Has a pool do the jobs of a search until there is none left, or the pool is stopped, and shows how far it
/// is.
/// @param pool whose work is that of the search.
/// @throws std::runtime_error for a boot that cannot be made.
analysis::Influence FindInfluence(analysis::InfluenceSearch& search, supervisor::BootPool& pool);

}  // namespace zvcam
