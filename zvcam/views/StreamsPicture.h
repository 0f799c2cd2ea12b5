#pragma once

#include <cstdint>
#include <string>

#include "analysis/DeviceGroups.h"
#include "zvcam/views/Html.h"

namespace zvcam {

/// The largest width and height of any stream: what all pictures of a page are drawn to the scale of.
struct StreamScale {
    std::int64_t width = 1;
    std::int64_t height = 1;
};
StreamScale ScaleOf(const std::vector<analysis::SharedStreams>& lists);

/// Stream sizes drawn to scale, a picture a format, all sizes of it from one corner; and a table of them.
/// @param heading whose they are.
Markup StreamsPicture(const analysis::SharedStreams& list, const StreamScale& scale, const Markup& heading);

}  // namespace zvcam
