#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "virtualphone/PhoneDescription.h"

namespace supervisor {

/// A phone as bytes, its files left out: how it crosses to the process that boots it, where they are laid.
void AppendDescription(std::vector<std::uint8_t>& bytes, const virtualphone::PhoneDescription& phone);

/// The phone that `bytes` hold from the first to the last; none where they hold anything else.
std::optional<virtualphone::PhoneDescription> ReadDescription(std::span<const std::uint8_t> bytes);

}  // namespace supervisor
