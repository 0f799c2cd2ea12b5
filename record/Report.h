#pragma once

#include <iosfwd>
#include <stdexcept>
#include <string_view>

#include "record/BootRecord.h"

namespace record {

/// Writes a boot as a report: JSON, complete and in order (docs/report.md has the keys).
///
/// Bytes that are not UTF-8 become U+FFFD; floats are the shortest text that reads back as the same float,
/// and "NaN", "Infinity" or "-Infinity" where JSON has no number for them. Reading a report and writing it
/// again gives the same bytes, that of a record which is not `ordered` included.
/// @param boot its `description` is empty or JSON.
void WriteReport(std::ostream& out, const BootRecord& boot);

/// What is wrong with a report, in one line: "/json/pointer: expected ..., got ...". Text that is not JSON is
/// named by line and column.
class ReportError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a report, also one that lacks "format", "plugin", "ended", "events", "description" or the "read" of
/// EEPROM reads.
/// @throws ReportError for text that is no report: keys that are unknown, missing or stand twice, wrong
/// types, numbers out of range, events that do not fit the lists they point into.
BootRecord ReadReport(std::string_view text);

}  // namespace record
