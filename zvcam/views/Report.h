#pragma once

#include <iosfwd>

#include "supervisor/Boot.h"

namespace zvcam {

/// Writes the report of a boot as JSON: every property set, file, merge, hand-over, EEPROM read and log line,
/// complete and in order. Bytes that are not UTF-8 become U+FFFD; floats are the shortest text that reads
/// back as the same float, and "NaN", "Infinity" or "-Infinity" where JSON has no number for them.
void WriteReport(std::ostream& out, const supervisor::BootOutcome& outcome);

}  // namespace zvcam
