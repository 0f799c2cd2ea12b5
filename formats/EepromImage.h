#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "tables/CameraModules.h"
#include "tables/EepromLayouts.h"
#include "tables/Stabiliser.h"

/// The fields of a camera module's memory. Every function takes bytes of any length: what lies beyond their
/// end reads as 0.
namespace formats {

using ImageBytes = std::span<const std::uint8_t>;

/// Checksum of the module makers over the bytes `first` to `last` inclusive: their sum modulo 255, plus 1.
/// It is never 0, so a memory full of zeros fails. An empty range (`first` > `last`) yields 1.
/// @return 1 to 255.
std::uint8_t EepromCheckSum(ImageBytes image, std::size_t first, std::size_t last);

/// The four bytes, little-endian, in which a layout looks for its header id.
std::uint32_t ReadHeaderId(ImageBytes image, const EepromCheckSumDesc& layout);

/// Whether a header id is the layout's. The highest byte takes no part in the comparison.
bool IsHeaderIdOf(std::uint32_t headerId, const EepromCheckSumDesc& layout);

/// The layout whose header id the image carries; null where none matches.
const EepromCheckSumDesc* FindEepromLayout(ImageBytes image);

/// The layout with this EEPROM driver name; null where there is none.
const EepromCheckSumDesc* FindEepromLayout(std::string_view eepromName);

/// What checking one range of a layout showed.
struct CheckSumFinding {
    SubModuleCheckSumDesc range;
    std::uint8_t stored;
    std::uint8_t computed;

    bool good() const { return stored == computed; }
};

CheckSumFinding CheckRange(ImageBytes image, const SubModuleCheckSumDesc& range);

/// One finding a range, in the layout's order.
std::vector<CheckSumFinding> CheckRanges(ImageBytes image, const EepromCheckSumDesc& layout);

/// Makes every checksum byte of a layout good, where it lies inside the image.
void StoreCheckSums(const EepromCheckSumDesc& layout, std::span<std::uint8_t> image);

/// The three bytes that tell what a module is.
struct ModuleIdentity {
    std::uint8_t vendorId;  ///< the maker
    std::uint8_t lensId;
    std::uint8_t sensorId;
};

ModuleIdentity ReadIdentity(ImageBytes image);

/// @return `descriptor.fuseIdLength` bytes.
std::vector<std::uint8_t> ReadFuseId(ImageBytes image, const FuseIdDescriptor& descriptor);

/// Value of a QR code's flag byte when the code is valid.
inline constexpr std::uint8_t kQRCodeValid = 1;

/// @return `descriptor.qrCodeLength` bytes, or no value where the flag says that there is no code.
std::optional<std::vector<std::uint8_t>> ReadQRCode(ImageBytes image, const QRCodeDescriptor& descriptor);

/// A stabiliser parameter from the bytes of its field, and the base that its maker starts from.
int StabiliserParameter(const tables::StabiliserField& field, ImageBytes bytes, int makerId);

/// The stabiliser's parameters, in the order of tables::kStabiliserFields.
std::array<int, tables::kStabiliserFields.size()> ReadStabiliserParameters(ImageBytes image);

}  // namespace formats
