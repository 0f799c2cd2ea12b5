#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "record/Events.h"

namespace record {

/// Appends an event as bytes: how events cross from one process of this machine to another.
void AppendEvent(std::vector<std::uint8_t>& bytes, const Event& event);

/// The event that `bytes` hold from the first to the last; none where they hold anything else. Takes bytes
/// from anyone: what is read is bounded by their number.
std::optional<Event> ReadEvent(std::span<const std::uint8_t> bytes);
/// The same in place.
/// @return whether `bytes` hold an event; where they do not, `event` is any.
bool ReadEvent(std::span<const std::uint8_t> bytes, Event& event);

}  // namespace record
