#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "virtualphone/PhoneDescription.h"
#include "zvcam/fleet/TroubleTargets.h"

namespace zvcam {

/// Something that can be wrong with a phone of a made fleet.
struct Trouble {
    const char* name;     ///< "lsc"
    const char* meaning;  ///< "the checksum of a module's lens shading is bad"
    const char* query;    ///< counts the phones, or pairs of phones, that have it in a fleet's database
};

std::span<const Trouble> Troubles();

/// Troubles that are not in a description: they come about where fuse ids are given and where a phone is
/// written.
inline constexpr std::string_view kDuplicate = "duplicate";
inline constexpr std::string_view kCut = "cut";

/// How often a trouble is.
struct TroubleRate {
    std::size_t trouble = 0;  ///< position in `Troubles`
    double rate = 0;          ///< of the phones, 0 to 1
};

/// Reads "lsc=0.01,erased=0.002".
/// @throws std::runtime_error for another text, a name that stands twice and rates of more than 1 together.
std::vector<TroubleRate> ReadTroubleRates(std::string_view text);

/// What a trouble can strike of a phone.
/// @param trouble position in `Troubles`.
std::vector<TroubleTarget> TargetsOf(std::size_t trouble, const virtualphone::PhoneDescription& phone);

/// Brings a trouble about.
/// @param target one of `TargetsOf` a phone like this one.
void Strike(std::size_t trouble, const TroubleTarget& target, virtualphone::PhoneDescription& phone);

}  // namespace zvcam
