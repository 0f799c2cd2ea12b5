#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "formats/EepromImage.h"

namespace formats {

/// Where the text of a dump is not what it should be.
struct EepromDumpError {
    std::size_t line;      ///< counted from 1
    std::string expected;  ///< such as "offset 0x0010"
    std::string found;     ///< such as "offset 0x0012" or "half a byte"

    friend bool operator==(const EepromDumpError&, const EepromDumpError&) = default;
};

/// An image of tables::kEepromImageSize bytes, or what is wrong.
using EepromDump = std::variant<std::vector<std::uint8_t>, EepromDumpError>;

/// Whether a file's content is the text of a dump and not raw bytes: its first line that says anything begins
/// like one of a dump.
bool IsEepromDump(std::string_view content);

/// Reads the text of a dump, in which every offset stands once and in ascending order:
///
///     0x0010 = 0xa5                                          the plug-in's own dump
///     I CameraPlatformInfoZelvan: 0x0010 = 0xa5              the same as logcat prints it
///     00000010: a55a 0102 ...  .Z..                          xxd, with or without -a
///     00000010  a5 5a 01 02 ...  |.Z..|                      hexdump -C, with "*" lines
///
/// Digits may be upper-case; a byte order mark, carriage returns, blank lines and comments (#, //) mean
/// nothing.
EepromDump ReadEepromDump(std::string_view text);

/// What a file of a module's memory holds, raw bytes or the text of a dump.
struct EepromFile {
    std::vector<std::uint8_t> image;  ///< tables::kEepromImageSize bytes; empty where the file holds none
    std::size_t size = 0;             ///< bytes that the file states; zeros fill up what raw bytes leave
    std::string expected;             ///< where there is no image
    std::string found;
};

EepromFile ReadEepromFile(ImageBytes content);

/// The text of a dump in the plug-in's form.
std::string EepromDumpText(ImageBytes image);

}  // namespace formats
