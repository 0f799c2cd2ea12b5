#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace formats {

/// Bytes to put into the image of a module's memory.
struct ImageChange {
    std::size_t offset = 0;
    std::vector<std::uint8_t> bytes;  ///< at least one; they end inside of tables::kEepromImageSize bytes

    /// @param image tables::kEepromImageSize bytes.
    void apply(std::span<std::uint8_t> image) const;
};

/// Reads OFFSET=BYTES: the offset decimal, or hexadecimal behind "0x"; the bytes hexadecimal, white space
/// between them. None for a text that is no change inside an image.
std::optional<ImageChange> ReadImageChange(std::string_view text);

}  // namespace formats
