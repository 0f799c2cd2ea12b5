#pragma once

#include <iosfwd>
#include <string>

#include "analysis/EepromFindings.h"
#include "formats/EepromImage.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints what an image holds, whether it is sound, and what would be published from it.
/// @param name of the file.
/// @param size bytes that the file states; zeros fill up the rest.
void PrintEeprom(std::ostream& out, const std::string& name, std::size_t size, formats::ImageBytes image,
                 const analysis::EepromFindings& findings, const Style& style);

}  // namespace zvcam
