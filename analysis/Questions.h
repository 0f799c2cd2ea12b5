#pragma once

#include <string>

#include "record/Events.h"

namespace analysis {

/// What the plug-in asked the platform for, and what it got: "sensor ids of device 6: 0, 2". Empty for events
/// that are no question.
std::string QuestionInWords(const record::Event& event);

}  // namespace analysis
