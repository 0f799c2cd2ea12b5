#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "record/BootRecord.h"
#include "record/Events.h"

namespace record {

/// Appends an event as bytes: how events cross from one process of this machine to another.
void AppendEvent(std::vector<std::uint8_t>& bytes, const Event& event);

/// The event that `bytes` hold from the first to the last; none where they hold anything else. Takes bytes
/// from anyone: what is read is bounded by their number.
std::optional<Event> ReadEvent(std::span<const std::uint8_t> bytes);

/// A whole record as bytes, and the record that `bytes` hold from the first to the last; none where they hold
/// anything else.
std::string RecordBytes(const BootRecord& boot);
std::optional<BootRecord> ReadRecordBytes(std::string_view bytes);

}  // namespace record
