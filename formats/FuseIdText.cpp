#include "formats/FuseIdText.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "formats/Hex.h"

namespace formats {

namespace {

constexpr std::size_t kMakerAt = 0;
constexpr std::size_t kMakerLength = 4;
constexpr std::size_t kLengthAt = 4;
constexpr std::size_t kLengthDigits = 4;
constexpr std::size_t kFuseIdAt = 8;
constexpr std::size_t kQRLengthAt = 46;
constexpr std::size_t kQRCodeAt = 50;

/// Copies text into a field of `length` characters. A zero byte ends the text; what it leaves of the field
/// becomes zero bytes too.
void PutText(std::string& value, std::size_t at, std::size_t length, std::string_view text) {
    value.replace(at, length, length, '\0');
    const std::string_view copied = text.substr(0, std::min(text.find('\0'), length));
    value.replace(at, copied.size(), copied);
}

void PutNumber(std::string& value, std::size_t at, std::size_t number) {
    char digits[24];
    std::snprintf(digits, sizeof(digits), "%04zu", number);
    PutText(value, at, kLengthDigits, digits);
}

}  // namespace

std::string MakeFuseIdText(const char* makerName, std::span<const std::uint8_t> fuseId,
                           const std::optional<std::span<const std::uint8_t>>& qrCode) {
    std::string value(kFuseIdTextLength, '0');
    PutText(value, kMakerAt, kMakerLength, makerName);
    PutNumber(value, kLengthAt, 2 * fuseId.size());
    const std::string hex = UpperHex(fuseId.first(std::min<std::size_t>(fuseId.size(), kFuseIdBytes)));
    value.replace(kFuseIdAt, hex.size(), hex);
    if (qrCode) {
        PutNumber(value, kQRLengthAt, qrCode->size());
        const auto* const text = reinterpret_cast<const char*>(qrCode->data());
        const std::size_t length = std::min<std::size_t>(qrCode->size(), kQRCodeLength);
        PutText(value, kQRCodeAt, length, {text, length});
    }
    // A zero byte ends a property value.
    value.resize(std::min(value.find('\0'), value.size()));
    return value;
}

FuseIdField ParseFuseIdText(const std::string& text) {
    const std::string rest = text.substr(kFuseIdAt);
    const int length = std::stoi(text.substr(kLengthAt, kLengthDigits));
    return {.length = length, .hex = rest.substr(0, static_cast<std::size_t>(length))};
}

std::optional<FuseIdField> TryParseFuseIdText(const std::string& text) {
    if (text.size() < kFuseIdAt) {
        return std::nullopt;
    }
    const std::string lengthField = text.substr(kLengthAt, kLengthDigits);
    char* end = nullptr;
    std::strtol(lengthField.c_str(), &end, 10);
    return end == lengthField.c_str() ? std::nullopt : std::optional(ParseFuseIdText(text));
}

}  // namespace formats
