#pragma once

#include <string>

#include "formats/EepromDump.h"

namespace zvcam {

/// Reads the image of a module's memory: raw bytes or the text of a dump.
/// @param file a path, or "-" for standard input.
/// @throws std::runtime_error for what cannot be read or is neither.
formats::EepromFile ReadEepromFile(const std::string& file);

}  // namespace zvcam
