#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/Boot.h"
#include "formats/EepromImage.h"
#include "tables/EepromLayouts.h"

namespace analysis {

/// One checksummed range of a module's memory.
struct CheckedRange {
    formats::CheckSumFinding finding;
    bool empty = false;  ///< nothing but zeros: a stored 1 is then good and says nothing
};

/// What a module's memory says of itself.
struct ModuleMemory {
    std::uint8_t makerId = 0;
    std::string maker;                           ///< "semco"; empty for an unknown one
    const EepromCheckSumDesc* layout = nullptr;  ///< null: none of this phone's
    std::vector<CheckedRange> ranges;            ///< of the layout
    std::optional<std::uint8_t> erased;          ///< the one byte that fills the whole memory
    std::string qrCode;                          ///< empty without a valid one
};

/// One camera module that the phone has room for.
struct Module {
    enum class Reading { NotTried, Failed, Good };

    int role = 0;
    std::string name;                      ///< "back main"
    std::string chip;                      ///< "imx707"; empty: not fitted
    Reading reading = Reading::NotTried;   ///< of its memory
    std::optional<std::uint32_t> read;     ///< bytes that came back; none where nobody says
    std::optional<ModuleMemory> memory;    ///< none where it was not read, or the boot has no description
    std::string fuseId;                    ///< as published, upper-case hexadecimal
    std::string focusPoints;               ///< as published
    formats::ImageBytes image;             ///< of its memory; empty where there is no `memory`
    std::optional<bool> layoutOfThisChip;  ///< none without a layout

    bool fitted() const { return !chip.empty(); }
};

/// The modules by ascending role, those that are not fitted included. Empty where the boot did not come to
/// name them. They point into `boot`.
std::vector<Module> ModulesOf(const Boot& boot);

/// What an image says of its module.
/// @param layout null where it is of none.
/// @param role of the module, which tells where its QR code lies; -1: of none.
ModuleMemory MemoryOf(formats::ImageBytes image, const EepromCheckSumDesc* layout, int role);

/// The role of the modules that a layout is made for: of the chip that its name has.
std::optional<int> RoleOfLayout(const EepromCheckSumDesc& layout);

/// "back main" for a role that a module can have, "role 60" for any other.
std::string RoleName(int role);

}  // namespace analysis
