#pragma once

#include <vector>

#include "analysis/Boot.h"
#include "analysis/Devices.h"
#include "zvcam/views/Html.h"

namespace zvcam {

/// Everything that a boot published and logged, a searchable table a section.
std::vector<PageSection> RecordSections(const analysis::Boot& boot, const analysis::Course& course,
                                        const std::vector<analysis::Device>& devices);

/// The devices of some merges: "0, 0/0 and 4", "all 17 devices". A merge that no device announced is its
/// provider's.
std::string DevicesText(const std::vector<std::size_t>& merges, const record::BootRecord& boot,
                        const std::vector<analysis::Device>& devices);

}  // namespace zvcam
