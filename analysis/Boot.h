#pragma once

#include <optional>

#include "record/BootRecord.h"
#include "virtualphone/PhoneDescription.h"

/// What a boot means. Everything here is a function of what happened and of the phone that it happened to;
/// nothing reads a file, writes to a stream or knows an option.
namespace analysis {

/// A boot, and the phone that was booted.
struct Boot {
    record::BootRecord record;
    /// None for an older report, which does not say: what only the description knows stays unanswered.
    std::optional<virtualphone::PhoneDescription> phone;

    /// Whether it ended otherwise than by returning: what it had not come to by then says nothing.
    bool cutShort() const { return record.ended && !record.ended->returned(); }
};

}  // namespace analysis
