#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "tables/CameraRoles.h"
#include "tables/EepromLayouts.h"
#include "tables/ModuleMakers.h"

/// The optical image stabiliser of the back main camera.
namespace tables {

inline constexpr int kStabilisedRole = camera_role::kBackMain;

/// A number that a module keeps for its stabiliser, high byte first.
struct StabiliserField {
    const char* name;
    int offset;  ///< in the EEPROM image, bytes
    int size;    ///< 1 or 2 bytes
    /// Sensitivities are burned as differences from a base of the maker's.
    bool isSensitivity = false;
};

/// In the order in which the parameters are read and handed on: gain X and Y, third and fourth parameter,
/// sensitivity X and Y (fixed point with 12 fraction bits).
inline constexpr std::array<StabiliserField, 6> kStabiliserFields = {{
    {.name = "gain X", .offset = 0x20F2, .size = 2},
    {.name = "gain Y", .offset = 0x2112, .size = 2},
    {.name = "third parameter", .offset = 0x20F4, .size = 1},
    {.name = "fourth parameter", .offset = 0x2114, .size = 1},
    {.name = "sensitivity X", .offset = 0x210D, .size = 1, .isSensitivity = true},
    {.name = "sensitivity Y", .offset = 0x212D, .size = 1, .isSensitivity = true},
}};

static_assert(std::all_of(kStabiliserFields.begin(), kStabiliserFields.end(),
                          [](const StabiliserField& field) {
                              return (field.size == 1 || field.size == 2) &&
                                     IsInImage(field.offset, field.size);
                          }));

/// What the maker's sensitivities are differences from.
constexpr int SensitivityBase(int makerId) {
    return makerId == maker::kSemco ? 300 : 200;
}

/// The gains that the stabiliser accepts, both ends included.
inline constexpr std::uint32_t kLeastGain = 4000;
inline constexpr std::uint32_t kGreatestGain = 17000;

}  // namespace tables
