// Any bytes as a calibration file of either kind. What can be sealed is good once it is, but for the fields
// of a stabiliser file that no CRC mends.

#include "analysis/CalibrationFiles.h"
#include "formats/Hex.h"
#include "fuzz/support/Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzBytes bytes(data, size);
    const analysis::CalibrationContent content = analysis::ContentOfCalibrationFile(bytes);
    Require((content.dual || content.ois) == content.trouble.empty());
    const auto sealed = analysis::Sealed(bytes);
    Require(sealed.has_value() == content.trouble.empty());
    if (sealed) {
        const analysis::CalibrationContent mended = analysis::ContentOfCalibrationFile(*sealed);
        Require(!content.dual || (mended.dual && mended.dualTrouble().empty()));
        Require(content.dual || (mended.ois && mended.ois->reading.crcGood && !mended.ois->crcMissing));
        Require(analysis::Sealed(*sealed) == sealed);
    }
    // A phone whose modules the file names, and one whose modules it does not.
    Require(!analysis::Serves(content, {}));
    if (content.dual) {
        const formats::DualCalibrationFile& file = content.dual->file;
        const analysis::FuseIdOwners owners = {.searched = {{.role = tables::camera_role::kBackMain,
                                                             .fuseId = formats::UpperHex(file.masterFuseId)},
                                                            {.role = tables::camera_role::kBackTele,
                                                             .fuseId = formats::UpperHex(file.slaveFuseId)}},
                                               .endsAt = {},
                                               .stabilised = {}};
        Require(analysis::PairsOf(file, owners).size() <= tables::kDualCameraPairs.size());
    }
    return 0;
}
