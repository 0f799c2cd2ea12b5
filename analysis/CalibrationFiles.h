#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/Boot.h"
#include "analysis/Modules.h"
#include "formats/DualCalibrationFile.h"
#include "formats/OisCalibrationFile.h"
#include "tables/CameraPairs.h"

/// Calibration files as a person has them, told apart by their content alone.
namespace analysis {

/// A stabiliser file's fields, and whether a CRC follows them.
struct OisContent {
    formats::OisCalibrationReading reading;
    bool crcMissing = false;  ///< the file ends with gain Y
    std::size_t notRead = 0;  ///< bytes between gain Y and the CRC
};

/// What a file is. Some content reads soundly as both kinds.
struct CalibrationContent {
    std::optional<formats::DualCalibrationReading> dual;
    std::optional<OisContent> ois;
    std::string trouble;  ///< why it is neither

    /// Why the plug-in would refuse it in the place of each kind; empty where it would not.
    std::string dualTrouble() const;
    std::string oisTrouble() const;
    bool good() const { return dualTrouble().empty() || oisTrouble().empty(); }
};

/// "its gains are not 4000 to 17000".
std::string GainsRefused();

CalibrationContent ContentOfCalibrationFile(std::span<const std::uint8_t> bytes);

/// The file with its CRC added or mended; none where it is neither kind.
std::optional<std::vector<std::uint8_t>> Sealed(std::span<const std::uint8_t> bytes);

/// Whom the fuse ids of calibration files name on a phone.
struct FuseIdOwners {
    struct Owner {
        int role = 0;
        std::string fuseId;  ///< upper-case hexadecimal
    };
    /// In the order in which a fuse id is compared with them.
    std::vector<Owner> searched;
    /// The module that publishes no fuse id: the search ends there, and finds none of those behind it.
    std::optional<int> endsAt;
    std::string stabilised;  ///< fuse id of the stabilised module; empty where it publishes none

    /// None for a fuse id of no module that is found.
    std::optional<int> roleOf(std::span<const std::uint8_t> fuseId) const;
    /// The same in words: "back main", "no module of this phone", where the search ends early "no module
    /// that is found"; "nobody" for an empty fuse id.
    std::string nameOf(std::span<const std::uint8_t> fuseId) const;
    /// Where the search ends early, in words; empty where it does not.
    std::string searchEnd() const;
};

FuseIdOwners FuseIdOwnersOf(const Boot& boot);
/// Before a boot, as far as the memories tell.
/// @param modules by sensor index; role -1 for a sensor that is no module.
FuseIdOwners FuseIdOwnersOf(std::span<const Module> modules);

/// The pairs that a sound dual-camera file is taken for, where it is the first.
std::vector<const DualCameraCalDataInfo*> PairsOf(const formats::DualCalibrationFile& file,
                                                  const FuseIdOwners& owners);

/// Whether the phone's stabiliser is the one that a sound file was made for.
bool IsForStabiliser(const formats::OisCalibrationFile& file, const FuseIdOwners& owners);

/// Whether a phone would use a file, where it is the first.
bool Serves(const CalibrationContent& content, const FuseIdOwners& owners);

/// A persist folder as the plug-in sees it.
struct CalibrationFolder {
    struct File {
        std::string name;
        CalibrationContent content;
    };
    std::vector<File> considered;    ///< for camera pairs, in their order
    std::optional<File> stabiliser;  ///< none: there is no file of its name
    std::vector<std::string> others;

    /// The file that a pair's block is taken from; null: none.
    const File* takenFor(const DualCameraCalDataInfo& pair, const FuseIdOwners& owners) const;
    bool stabiliserTaken(const FuseIdOwners& owners) const;
    /// Whether there is something, all of it sound, and for a phone every place filled that can be.
    /// @param owners null where nobody says.
    bool good(const FuseIdOwners* owners) const;
};

}  // namespace analysis
