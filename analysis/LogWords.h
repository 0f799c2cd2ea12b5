#pragma once

#include <string>

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

}  // namespace analysis
