#pragma once

#include <string>
#include <string_view>

#include "record/Events.h"

namespace analysis {

/// Whether a line reports a failure.
bool IsError(const record::LogLine& line);

/// Whether a healthy phone logs this error too: a logical role has no module, and the plug-in says so each
/// time that it looks for its memory.
bool IsOnEveryPhone(const record::LogLine& line);

/// What a line of the plug-in says went wrong, in words that need no look-up: "no sensor object" for "Cannot
/// get halsensor". The line's own text where there are no better words.
std::string InWords(const record::LogLine& line);

/// A text in which "#" stands for what differs from phone to phone: numbers, in hexadecimal too, and ids of
/// eight hexadecimal digits or more. "role #, tag:#" of "role 20, tag:-5"; names such as imx707 stay.
std::string WithoutNumbers(std::string_view text);

}  // namespace analysis
