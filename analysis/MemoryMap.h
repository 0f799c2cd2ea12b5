#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "formats/EepromImage.h"
#include "tables/CameraPairs.h"
#include "tables/EepromLayouts.h"

namespace analysis {

/// What a stretch of a module's memory is for.
struct MarkedRange {
    enum class Kind { Identity, FuseId, QRCode, Checked, CheckSum, Stabiliser, CalibrationBlock };
    /// Of what is checked, and of its checksum; Empty: nothing but zeros, with the checksum of zeros.
    enum class State { Unchecked, Good, Empty, Bad };

    Kind kind = Kind::Identity;
    std::string name;       ///< "LSC", "LSC checksum", "gain X"
    std::size_t first = 0;  ///< byte offset
    std::size_t last = 0;   ///< inclusive
    std::string value;      ///< what its bytes say, in words; empty where they say nothing by themselves
    State state = State::Unchecked;
};

/// The stretches of an image that the plug-in reads, by where they begin, a longer one before those inside
/// it.
/// @param image tables::kEepromImageSize bytes.
/// @param layout null: the image is of none, and nothing is checked.
/// @param role of the module; -1: of none, then only what every module has.
/// @param pairs those whose blocks a module may carry.
std::vector<MarkedRange> MarkedRangesOf(
    formats::ImageBytes image, const EepromCheckSumDesc* layout, int role,
    std::span<const DualCameraCalDataInfo> pairs = tables::kDualCameraPairs);

}  // namespace analysis
