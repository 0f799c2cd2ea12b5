#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "tables/CameraModules.h"

namespace formats {

/// The value of a fuse id property: 90 characters in fixed fields, filled up with the character "0".
///
/// | position | length | content                                             |
/// |----------|--------|-----------------------------------------------------|
/// | 0        | 4      | first characters of the module maker's name         |
/// | 4        | 4      | number of fuse id digits, decimal                   |
/// | 8        | 32     | fuse id, upper-case hex; unused digits are 0        |
/// | 40       | 6      | filler                                              |
/// | 46       | 4      | QR code length, decimal; filler without a code      |
/// | 50       | 14     | QR code as it stands in the module                  |
/// | 64       | 26     | filler                                              |
inline constexpr int kFuseIdTextLength = 90;
inline constexpr int kFuseIdBytes =
    tables::kLongestModuleFuseId;  ///< bytes of the fuse id that the text has room for
inline constexpr int kQRCodeLength =
    tables::kLongestModuleQRCode;  ///< characters of the QR code that the text has room for

/// Composes the text.
/// @param fuseId the module's fuse id bytes; what is beyond kFuseIdBytes is left out.
/// @param qrCode the QR code bytes, or no value where the module carries no valid one.
/// @return kFuseIdTextLength characters, or fewer where the QR code holds a zero byte: it ends the text.
std::string MakeFuseIdText(const char* makerName, std::span<const std::uint8_t> fuseId,
                           const std::optional<std::span<const std::uint8_t>>& qrCode);

/// The fuse id as a text carries it.
struct FuseIdField {
    int length;       ///< value of the length field; negative means "the rest of the text"
    std::string hex;  ///< at most `length` characters
};

/// Reads the fuse id back.
/// Raises std::out_of_range for a text of fewer than 8 characters, std::invalid_argument for a length field
/// that is no number.
FuseIdField ParseFuseIdText(const std::string& text);

/// The same, with no value for such a text.
std::optional<FuseIdField> TryParseFuseIdText(const std::string& text);

}  // namespace formats
