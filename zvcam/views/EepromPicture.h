#pragma once

#include <string>

#include "analysis/Modules.h"
#include "zvcam/views/Html.h"

namespace zvcam {

/// The id of a module's picture: "eeprom-back-main".
std::string EepromPictureId(const analysis::Module& module);

/// A module's memory as a square of its bytes, one cell a byte and 128 a row, with what the plug-in reads
/// outlined, and a table that names it. The page's script names the byte under the pointer and under the
/// keyboard's cursor.
/// @param module with an image.
Markup EepromPicture(const analysis::Module& module);

}  // namespace zvcam
