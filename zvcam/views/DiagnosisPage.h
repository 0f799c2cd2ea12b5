#pragma once

#include <string>
#include <vector>

#include "analysis/Diagnosis.h"
#include "zvcam/views/Html.h"

namespace zvcam {

/// What a search can be confined to for a device: its tags and log lines.
std::string KindOf(const analysis::Device& device);

/// The diagnosis: findings, modules, calibration and devices, a section each.
std::vector<PageSection> DiagnosisSections(const analysis::Boot& boot, const analysis::Diagnosis& diagnosis);

}  // namespace zvcam
