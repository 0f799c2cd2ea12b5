#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "virtualphone/CallFaults.h"
#include "virtualphone/PhoneDescription.h"

namespace supervisor {

/// A phone, and calls of it that fail.
using FaultyPhone = std::pair<virtualphone::PhoneDescription, virtualphone::FailingCalls>;

/// A phone as bytes, its files left out: how it crosses to the process that boots it, where they are laid.
void AppendPhone(std::vector<std::uint8_t>& bytes, const virtualphone::PhoneDescription& phone,
                 const virtualphone::FailingCalls& failing);

/// The phone that `bytes` hold from the first to the last; none where they hold anything else.
std::optional<FaultyPhone> ReadPhone(std::span<const std::uint8_t> bytes);

}  // namespace supervisor
