#include "formats/ImageChange.h"

#include <algorithm>

#include "formats/Hex.h"
#include "tables/EepromLayouts.h"

namespace formats {

void ImageChange::apply(std::span<std::uint8_t> image) const {
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::optional<ImageChange> ReadImageChange(std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::optional<std::uint32_t> offset = ParseNumber(text.substr(0, equals));
    auto bytes = equals == std::string_view::npos ? std::nullopt : ParseHex(text.substr(equals + 1));
    if (!offset || !bytes || bytes->empty() || *offset >= tables::kEepromImageSize ||
        bytes->size() > tables::kEepromImageSize - *offset) {
        return std::nullopt;
    }
    return ImageChange{.offset = *offset, .bytes = *std::move(bytes)};
}

}  // namespace formats
