#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "record/BootRecord.h"

namespace record {

/// A whole record as bytes: how it crosses from one process of this machine to another.
std::string RecordBytes(const BootRecord& boot);

/// The record that `bytes` hold from the first to the last; none where they hold anything else. Takes bytes
/// from anyone: what is read is bounded by their number.
std::optional<BootRecord> ReadRecordBytes(std::string_view bytes);

}  // namespace record
