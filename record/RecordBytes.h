#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "record/BootRecord.h"

namespace record {

/// A whole record as bytes: how one crosses from a process of this machine to another.
std::string RecordBytes(const BootRecord& boot);

/// The record that `bytes` hold from the first to the last; none where they hold anything else.
std::optional<BootRecord> ReadRecordBytes(std::string_view bytes);

}  // namespace record
