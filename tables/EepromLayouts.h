#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Where things stand in a camera module's memory.

/// One checksummed range of an EEPROM layout.
struct SubModuleCheckSumDesc {
    const char* name;            ///< as log lines name it; null ends the list
    std::uint32_t startAddr;     ///< first byte of the range
    std::uint32_t endAddr;       ///< last byte of the range, inclusive
    std::uint32_t checkSumAddr;  ///< the one stored checksum byte
};

/// One EEPROM layout: how to recognise it and which ranges it checks.
struct EepromCheckSumDesc {
    std::uint32_t headerIdOffset;  ///< four bytes, little-endian
    std::uint32_t expectHeaderId;  ///< its low 24 bits identify the layout
    const char* eepromName;        ///< name of the EEPROM driver
    std::array<SubModuleCheckSumDesc, 16> subModules;
};

namespace tables {

/// Bytes of a module's EEPROM image.
inline constexpr std::size_t kEepromImageSize = 16384;

/// Whether so many bytes from `offset` on lie inside an image.
constexpr bool IsInImage(int offset, int size) {
    return offset >= 0 && size >= 0 &&
           static_cast<std::size_t>(offset) + static_cast<std::size_t>(size) <= kEepromImageSize;
}

/// Offsets of the three identity bytes.
inline constexpr int kVendorIdOffset = 1;
inline constexpr int kLensIdOffset = 8;
inline constexpr int kSensorIdOffset = 12;

/// The layouts of this phone's modules, in the order in which they are tried.
inline constexpr std::array<EepromCheckSumDesc, 4> kEepromLayouts = {{
    {.headerIdOffset = 8,
     .expectHeaderId = 0x043D8EC2,
     .eepromName = "halcyrion_semco_wide_imx707_eeprom",
     .subModules = {{
         {.name = "AF", .startAddr = 40, .endAddr = 66, .checkSumAddr = 67},
         {.name = "AWB", .startAddr = 1873, .endAddr = 1891, .checkSumAddr = 1892},
         {.name = "LSC", .startAddr = 1928, .endAddr = 3799, .checkSumAddr = 3800},
         {.name = "PDAF", .startAddr = 6888, .endAddr = 8394, .checkSumAddr = 8395},
         {.name = "OIS", .startAddr = 8431, .endAddr = 8504, .checkSumAddr = 8505},
     }}},
    {.headerIdOffset = 8,
     .expectHeaderId = 0xFF11B0C6,
     .eepromName = "halcyrion_sunny_tele_ov50d_eeprom",
     .subModules = {{
         {.name = "AF", .startAddr = 40, .endAddr = 66, .checkSumAddr = 67},
         {.name = "AWB", .startAddr = 1873, .endAddr = 1891, .checkSumAddr = 1892},
         {.name = "LSC", .startAddr = 1928, .endAddr = 3799, .checkSumAddr = 3800},
         {.name = "PDAF", .startAddr = 5820, .endAddr = 7326, .checkSumAddr = 7327},
     }}},
    {.headerIdOffset = 8,
     .expectHeaderId = 0xFFFFFF73,
     .eepromName = "halcyrion_aac_front_imx596_eeprom",
     .subModules = {{
         {.name = "AWB", .startAddr = 1873, .endAddr = 1891, .checkSumAddr = 1892},
         {.name = "LSC", .startAddr = 1928, .endAddr = 3799, .checkSumAddr = 3800},
     }}},
    {.headerIdOffset = 8,
     .expectHeaderId = 0xFFFFFFFD,
     .eepromName = "halcyrion_ofilm_uw_ov13b_eeprom",
     .subModules = {{
         {.name = "AWB", .startAddr = 1873, .endAddr = 1891, .checkSumAddr = 1892},
         {.name = "LSC", .startAddr = 1928, .endAddr = 3799, .checkSumAddr = 3800},
     }}},
}};

/// The ranges that a layout has.
constexpr std::span<const SubModuleCheckSumDesc> RangesOf(const EepromCheckSumDesc& layout) {
    std::size_t count = 0;
    while (count < layout.subModules.size() && layout.subModules[count].name != nullptr) {
        ++count;
    }
    return std::span(layout.subModules).first(count);
}

/// Whether every range and checksum byte of the layouts lies inside an image, so that no reader has to ask.
constexpr bool LayoutsFitImage() {
    for (const EepromCheckSumDesc& layout : kEepromLayouts) {
        if (layout.headerIdOffset + 4 > kEepromImageSize) {
            return false;
        }
        for (const SubModuleCheckSumDesc& part : RangesOf(layout)) {
            if (part.endAddr >= kEepromImageSize || part.checkSumAddr >= kEepromImageSize) {
                return false;
            }
        }
    }
    return true;
}
static_assert(LayoutsFitImage());

}  // namespace tables
