#pragma once

#include <cstdint>
#include <string>

#include <CLI/CLI.hpp>

namespace zvcam {

/// Refuses what is no whole number of `least` to `most`. A sign, and what is too much for 64 bits, would pass
/// for another number.
CLI::Validator WholeNumber(std::uint64_t least, std::uint64_t most);

/// Refuses what is no name: an empty text, which would pass for no option at all, and another option, which
/// the one before would take for its value. Either is what an unset variable of a shell leaves.
std::string CheckName(const std::string& text);

}  // namespace zvcam
