#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/Diagnosis.h"
#include "analysis/Modules.h"
#include "formats/EepromImage.h"
#include "tables/CameraModules.h"

namespace analysis {

/// What is right and wrong with the image of a module's memory, and what the plug-in would make of it.
struct EepromFindings {
    formats::ModuleIdentity identity{};
    std::uint32_t headerId = 0;  ///< the four bytes where every layout looks for it
    bool layoutGiven = false;    ///< by a person; else `memory.layout` is the one that the header id names
    ModuleMemory memory;
    std::optional<int> role;                        ///< of the modules with this layout
    const FuseIdDescriptor* fuseIdPlace = nullptr;  ///< null without a role that has one
    std::vector<std::uint8_t> fuseId;
    const QRCodeDescriptor* qrCodePlace = nullptr;  ///< null where the maker burns none for this role
    /// Properties by name, in the order in which they are set; those of the stabiliser as they are without a
    /// calibration file.
    std::vector<std::pair<std::string, std::string>> published;
    std::vector<Finding> findings;  ///< the worst first; checksums stand in `memory`

    /// No error, and every checksum is the stored one.
    bool good() const;
};

/// @param image tables::kEepromImageSize bytes.
/// @param layout the one to check by; null: the one that the image's header id names.
EepromFindings FindingsOf(formats::ImageBytes image, const EepromCheckSumDesc* layout);

}  // namespace analysis
