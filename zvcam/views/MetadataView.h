#pragma once

#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>

#include "analysis/Devices.h"

namespace zvcam {

/// "device 4 (BACK_SAT, role 60)" or "device 4/3 (role 21)".
std::string DeviceText(const analysis::Device& device);

/// Prints a tag as `dumpsys media.camera` does: "NAME (number): type[count]", and its values in brackets on
/// the lines below, decoded where their layout is known.
void PrintTag(std::ostream& out, const record::Tag& tag);

/// Prints what was published for a device; only these tags where there are any.
void PrintDevice(std::ostream& out, const analysis::Device& device, const std::set<std::uint32_t>& only);

/// Prints what a provider holds, or is given.
void PrintProvider(std::ostream& out, std::uint32_t provider, const record::TagSet& metadata,
                   const std::set<std::uint32_t>& only);

/// The values of a tag, one text a line: rows of a stream list, records of a blob, or several plain values.
std::vector<std::string> ValueLines(const record::Tag& tag);

}  // namespace zvcam
