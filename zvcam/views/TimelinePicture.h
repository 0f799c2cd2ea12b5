#pragma once

#include <vector>

#include "analysis/Devices.h"
#include "analysis/Timeline.h"
#include "record/BootRecord.h"
#include "zvcam/views/Html.h"

namespace zvcam {

/// The steps of a boot and the devices of its walk, one below the other on one axis of events, with what each
/// did and a mark for each error.
Markup TimelinePicture(const record::BootRecord& boot, const analysis::Timeline& timeline,
                       const std::vector<analysis::Device>& devices);

}  // namespace zvcam
