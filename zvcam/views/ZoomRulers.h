#pragma once

#include "record/TagValues.h"
#include "zvcam/views/Html.h"

namespace zvcam {

/// The zoom scales of a tag as rulers: the control from end to end, a mark where a ratio lies on it. Empty
/// for a tag that holds none.
Markup ZoomRulers(const record::Tag& tag);

}  // namespace zvcam
