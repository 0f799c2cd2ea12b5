#pragma once

#include <iosfwd>
#include <string>

#include "analysis/DevicePull.h"
#include "analysis/PhoneCheck.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints what a phone description has: what is wrong first, then sensors, devices and files, a line each.
void PrintPhoneCheck(std::ostream& out, const std::string& source,
                     const virtualphone::PhoneDescription& phone, const analysis::PhoneCheck& check,
                     const Style& style);

/// Prints how a phone came out of a pulled folder.
void PrintDevicePull(std::ostream& out, const analysis::DevicePull& pull);

}  // namespace zvcam
