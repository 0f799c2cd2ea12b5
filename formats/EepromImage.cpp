#include "formats/EepromImage.h"

#include <algorithm>

namespace formats {

namespace {

std::uint8_t ByteAt(ImageBytes image, std::size_t offset) {
    return offset < image.size() ? image[offset] : std::uint8_t{0};
}

/// `size` bytes from `offset`; a negative number counts as 0.
std::vector<std::uint8_t> BytesAt(ImageBytes image, int offset, int size) {
    const ImageBytes rest =
        image.subspan(std::min(image.size(), static_cast<std::size_t>(std::max(offset, 0))));
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::max(size, 0)));
    std::copy_n(rest.begin(), std::min(rest.size(), bytes.size()), bytes.begin());
    return bytes;
}

}  // namespace

std::uint8_t EepromCheckSum(ImageBytes image, std::size_t first, std::size_t last) {
    std::uint32_t sum = 0;
    for (std::size_t i = first; i <= last && i < image.size(); ++i) {
        sum += image[i];
    }
    return static_cast<std::uint8_t>(sum % 255 + 1);
}

std::uint32_t ReadHeaderId(ImageBytes image, const EepromCheckSumDesc& layout) {
    std::uint32_t headerId = 0;
    for (std::size_t i = 4; i-- > 0;) {
        headerId = headerId << 8 | ByteAt(image, layout.headerIdOffset + i);
    }
    return headerId;
}

bool IsHeaderIdOf(std::uint32_t headerId, const EepromCheckSumDesc& layout) {
    constexpr std::uint32_t kComparedBits = 0x00FFFFFF;
    return (headerId & kComparedBits) == (layout.expectHeaderId & kComparedBits);
}

const EepromCheckSumDesc* FindEepromLayout(ImageBytes image) {
    const auto* const found = std::find_if(
        tables::kEepromLayouts.begin(), tables::kEepromLayouts.end(),
        [=](const EepromCheckSumDesc& layout) { return IsHeaderIdOf(ReadHeaderId(image, layout), layout); });
    return found == tables::kEepromLayouts.end() ? nullptr : found;
}

const EepromCheckSumDesc* FindEepromLayout(std::string_view eepromName) {
    const auto* const found =
        std::find_if(tables::kEepromLayouts.begin(), tables::kEepromLayouts.end(),
                     [=](const EepromCheckSumDesc& layout) { return eepromName == layout.eepromName; });
    return found == tables::kEepromLayouts.end() ? nullptr : found;
}

CheckSumFinding CheckRange(ImageBytes image, const SubModuleCheckSumDesc& range) {
    return {.range = range,
            .stored = ByteAt(image, range.checkSumAddr),
            .computed = EepromCheckSum(image, range.startAddr, range.endAddr)};
}

std::vector<CheckSumFinding> CheckRanges(ImageBytes image, const EepromCheckSumDesc& layout) {
    std::vector<CheckSumFinding> findings;
    for (const SubModuleCheckSumDesc& range : tables::RangesOf(layout)) {
        findings.push_back(CheckRange(image, range));
    }
    return findings;
}

void StoreCheckSums(const EepromCheckSumDesc& layout, std::span<std::uint8_t> image) {
    for (const SubModuleCheckSumDesc& range : tables::RangesOf(layout)) {
        if (range.checkSumAddr < image.size()) {
            image[range.checkSumAddr] = EepromCheckSum(image, range.startAddr, range.endAddr);
        }
    }
}

ModuleIdentity ReadIdentity(ImageBytes image) {
    return {.vendorId = ByteAt(image, tables::kVendorIdOffset),
            .lensId = ByteAt(image, tables::kLensIdOffset),
            .sensorId = ByteAt(image, tables::kSensorIdOffset)};
}

std::vector<std::uint8_t> ReadFuseId(ImageBytes image, const FuseIdDescriptor& descriptor) {
    return BytesAt(image, descriptor.fuseIdOffset, descriptor.fuseIdLength);
}

std::optional<std::vector<std::uint8_t>> ReadQRCode(ImageBytes image, const QRCodeDescriptor& descriptor) {
    if (BytesAt(image, descriptor.flagOffset, 1)[0] != kQRCodeValid) {
        return std::nullopt;
    }
    return BytesAt(image, descriptor.qrCodeOffset, descriptor.qrCodeLength);
}

int StabiliserParameter(const tables::StabiliserField& field, ImageBytes bytes, int makerId) {
    const int number = field.size == 2 ? ByteAt(bytes, 0) << 8 | ByteAt(bytes, 1) : ByteAt(bytes, 0);
    return field.isSensitivity ? tables::SensitivityBase(makerId) + number : number;
}

std::array<int, tables::kStabiliserFields.size()> ReadStabiliserParameters(ImageBytes image) {
    std::array<int, tables::kStabiliserFields.size()> parameters{};
    std::transform(tables::kStabiliserFields.begin(), tables::kStabiliserFields.end(), parameters.begin(),
                   [image, makerId = ReadIdentity(image).vendorId](const tables::StabiliserField& field) {
                       return StabiliserParameter(field, BytesAt(image, field.offset, field.size), makerId);
                   });
    return parameters;
}

}  // namespace formats
