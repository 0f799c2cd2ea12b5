#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "formats/EepromDump.h"
#include "formats/EepromImage.h"
#include "tables/EepromLayouts.h"
#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

/// An image from its raw bytes or from the text of a dump.
std::vector<std::uint8_t> ReadImageFile(const JsonValue& value, const std::filesystem::path& folder) {
    formats::EepromFile file = formats::ReadEepromFile(ReadSideFile(value, folder));
    if (file.image.empty()) {
        value.fail(file.expected, file.found);
    }
    return std::move(file.image);
}

const EepromCheckSumDesc& LayoutNamed(const JsonValue& value) {
    const EepromCheckSumDesc* layout = formats::FindEepromLayout(value.text());
    if (layout == nullptr) {
        std::string known;
        for (const EepromCheckSumDesc& each : tables::kEepromLayouts) {
            known += (known.empty() ? "" : ", ") + std::string(each.eepromName);
        }
        value.fail("an EEPROM layout, one of " + known);
    }
    return *layout;
}

/// Makes the checksums of the ranges that are named bad.
void BreakCheckSums(const JsonValue& value, const EepromCheckSumDesc& layout,
                    std::vector<std::uint8_t>& image) {
    const auto ranges = tables::RangesOf(layout);
    for (const JsonValue& name : value.elements()) {
        const auto range = std::find_if(ranges.begin(), ranges.end(), [&](const SubModuleCheckSumDesc& each) {
            return name.text() == each.name;
        });
        if (range == ranges.end()) {
            std::string known;
            for (const SubModuleCheckSumDesc& each : ranges) {
                known += (known.empty() ? "" : ", ") + std::string(each.name);
            }
            name.fail("a range of that layout, one of " + known);
        }
        const std::uint8_t good = formats::CheckRange(image, *range).computed;
        image[range->checkSumAddr] = static_cast<std::uint8_t>(good == 255 ? good - 1 : good + 1);
    }
}

}  // namespace

void ReadBytesByOffset(const JsonValue& value, std::vector<std::uint8_t>& image) {
    const auto last = static_cast<std::uint32_t>(std::max<std::size_t>(image.size(), 1) - 1);
    for (const auto& [offset, bytesValue] : value.numberedMembers<std::uint32_t>(0, last)) {
        const std::vector<std::uint8_t> bytes = bytesValue.hex();
        if (bytes.size() > image.size() - offset) {
            bytesValue.fail("at most " + std::to_string(image.size() - offset) + " bytes at this offset",
                            std::to_string(bytes.size()));
        }
        std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
    }
}

EepromDescription ReadEeprom(const JsonValue& value, const std::filesystem::path& folder) {
    std::optional<JsonValue> file;
    std::optional<JsonValue> fill;
    std::optional<JsonValue> bytes;
    std::optional<JsonValue> broken;
    const EepromCheckSumDesc* layout = nullptr;
    EepromDescription eeprom;
    value.readKeys({
        {"file", [&](const JsonValue& v) { file = v; }},
        {"fill", [&](const JsonValue& v) { fill = v; }},
        {"bytes", [&](const JsonValue& v) { bytes = v; }},
        {"checksums", [&](const JsonValue& v) { layout = &LayoutNamed(v); }},
        {"breakChecksums", [&](const JsonValue& v) { broken = v; }},
        {"readReturns", [&](const JsonValue& v) { eeprom.readReturns = v.integer<std::uint32_t>(); }},
    });
    if (file && fill) {
        value.fail(R"(either "file" or "fill")", "both");
    }
    if (file) {
        eeprom.image = ReadImageFile(*file, folder);
    } else {
        eeprom.image.assign(tables::kEepromImageSize, fill ? fill->integer<std::uint8_t>() : std::uint8_t{0});
    }
    if (bytes) {
        ReadBytesByOffset(*bytes, eeprom.image);
    }
    if (layout != nullptr) {
        formats::StoreCheckSums(*layout, eeprom.image);
    }
    if (broken) {
        if (layout == nullptr) {
            broken->fail("\"checksums\" beside it", "none");
        }
        BreakCheckSums(*broken, *layout, eeprom.image);
    }
    return eeprom;
}

}  // namespace virtualphone
