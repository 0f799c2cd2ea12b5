#pragma once

#include <array>

namespace tables {

/// Who built a module, as the byte at offset 1 of its memory states it.
struct ModuleMaker {
    int makerId;
    const char* name;
};

namespace maker {
inline constexpr int kSunny = 1;
inline constexpr int kSemco = 3;
inline constexpr int kOfilm = 7;
inline constexpr int kAac = 16;
}  // namespace maker

inline constexpr std::array<ModuleMaker, 9> kModuleMakers = {{
    {maker::kSunny, "sunny"},
    {maker::kSemco, "semco"},
    {6, "qtech"},
    {maker::kOfilm, "ofilm"},
    {8, "holitech"},
    {9, "truly"},
    // The underscore belongs to the name: it matches EEPROM driver names that end in it.
    {maker::kAac, "_aac"},
    {21, "liteon"},
    {37, "primax"},
}};

}  // namespace tables
