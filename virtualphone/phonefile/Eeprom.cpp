#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>

#include "formats/EepromImage.h"
#include "tables/EepromLayouts.h"
#include "virtualphone/phonefile/Sections.h"

namespace virtualphone {

namespace {

struct DumpLine {
    std::size_t offset;
    std::uint8_t byte;
};

/// Takes a hexadecimal number off the front of `text`.
std::optional<unsigned> TakeHexadecimal(std::string_view& text) {
    if (text.substr(0, 2) != "0x") {
        return std::nullopt;
    }
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 2, end, number, 16);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// One line of an EEPROM dump: "0x0010 = 0xa5".
std::optional<DumpLine> ParseDumpLine(std::string_view line) {
    constexpr std::string_view kSeparator = " = ";
    const std::optional<unsigned> offset = TakeHexadecimal(line);
    if (!offset || *offset >= tables::kEepromImageSize || line.substr(0, kSeparator.size()) != kSeparator) {
        return std::nullopt;
    }
    line.remove_prefix(kSeparator.size());
    const std::optional<unsigned> byte = TakeHexadecimal(line);
    if (!byte || *byte > 0xFF || !line.empty()) {
        return std::nullopt;
    }
    return DumpLine{*offset, static_cast<std::uint8_t>(*byte)};
}

/// Splits the next line off `text`, without its line end.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

std::vector<std::uint8_t> ParseDump(const JsonValue& value, std::string_view text) {
    std::vector<std::uint8_t> image(tables::kEepromImageSize);
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = TakeLine(text);
        const std::optional<DumpLine> parsed = ParseDumpLine(line);
        if (!parsed) {
            value.fail("an EEPROM dump of lines like \"0x0010 = 0xa5\" with offsets below " +
                           std::to_string(tables::kEepromImageSize),
                       "something else in line " + std::to_string(number) + " of the file");
        }
        image[parsed->offset] = parsed->byte;
    }
    return image;
}

/// An image from its raw bytes or from the text of a dump, which is told by its first line.
std::vector<std::uint8_t> ReadImageFile(const JsonValue& value, const std::filesystem::path& folder) {
    std::vector<std::uint8_t> bytes = ReadSideFile(value, folder);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::string_view rest = text;
    if (ParseDumpLine(TakeLine(rest))) {
        return ParseDump(value, text);
    }
    if (bytes.size() > tables::kEepromImageSize) {
        value.fail(
            "a file of at most " + std::to_string(tables::kEepromImageSize) + " bytes, or the text of a dump",
            std::to_string(bytes.size()) + " bytes");
    }
    bytes.resize(tables::kEepromImageSize);
    return bytes;
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
    const EepromCheckSumDesc* layout = nullptr;
    EepromDescription eeprom;
    value.readKeys({
        {"file", [&](const JsonValue& v) { file = v; }},
        {"fill", [&](const JsonValue& v) { fill = v; }},
        {"bytes", [&](const JsonValue& v) { bytes = v; }},
        {"checksums", [&](const JsonValue& v) { layout = &LayoutNamed(v); }},
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
    return eeprom;
}

}  // namespace virtualphone
