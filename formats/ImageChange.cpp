#include "formats/ImageChange.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "formats/Hex.h"
#include "tables/EepromLayouts.h"

namespace formats {

void ImageChange::apply(std::span<std::uint8_t> image) const {
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::optional<ImageChange> ReadImageChange(std::string_view text) {
    const std::size_t equals = text.find('=');
    std::string_view number = text.substr(0, equals);
    const bool hexadecimal = number.starts_with("0x") || number.starts_with("0X");
    number.remove_prefix(hexadecimal ? 2 : 0);
    ImageChange change;
    const char* const end = number.data() + number.size();
    const auto parsed = std::from_chars(number.data(), end, change.offset, hexadecimal ? 16 : 10);
    auto bytes = equals == std::string_view::npos ? std::nullopt : ParseHex(text.substr(equals + 1));
    if (parsed.ec != std::errc() || parsed.ptr != end || !bytes || bytes->empty() ||
        change.offset >= tables::kEepromImageSize ||
        bytes->size() > tables::kEepromImageSize - change.offset) {
        return std::nullopt;
    }
    change.bytes = *std::move(bytes);
    return change;
}

}  // namespace formats
