#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/Boot.h"
#include "analysis/Modules.h"
#include "analysis/Steps.h"
#include "tables/CameraPairs.h"

namespace analysis {

/// A place where a pair's block could have come from, and why it did not.
struct PassedOver {
    std::string candidate;  ///< a path on the phone, or "EEPROM"
    std::string reason;
    bool ofAnotherPair = false;  ///< a sound file that was made for others
};

/// Where calibration can come from.
enum class CalibrationSource { None, Eeprom, Persist, Golden };
/// "EEPROM", "persist", "golden"; empty for none.
const char* SourceName(CalibrationSource source);

/// Where a camera pair's calibration block came from.
struct PairDecision {
    using Source = CalibrationSource;

    const DualCameraCalDataInfo* pair = nullptr;
    Source source = Source::None;
    std::string path;  ///< of the file that was taken
    std::optional<std::size_t>
        blockSize;            ///< of a persist file's block, bytes; the dump is filled up with zeros
    bool dumpFailed = false;  ///< the pair's dump file could not be opened
    std::vector<PassedOver> passedOver;  ///< in the order in which they were tried
};

/// One decision a pair that the boot came to the end of, in the order of the pairs.
std::vector<PairDecision> PairDecisionsOf(const Boot& boot, const Course& course,
                                          const std::vector<Module>& modules);

/// The pair of the first two chips of a device with this role; null where they make none.
const DualCameraCalDataInfo* PairOfRole(int role);

/// "wide and ultra".
std::string PairName(const DualCameraCalDataInfo& pair);

/// Where the stabiliser's gains came from.
struct StabiliserDecision {
    std::string state;       ///< "0", "2" or "3", as published
    bool fromFile = false;   ///< else from the module's EEPROM
    std::string reason;      ///< why not from the file
    std::string parameters;  ///< as published: gain X, gain Y, third and fourth parameter

    CalibrationSource source() const {
        return fromFile ? CalibrationSource::Persist : CalibrationSource::Eeprom;
    }
};

/// None where the boot did not come to it.
std::optional<StabiliserDecision> StabiliserOf(const Boot& boot);

/// The bytes that a path of the phone held at the end of the boot: changed, or as they were laid. Null where
/// there is no such file or nobody says.
const std::vector<std::uint8_t>* FileAtEnd(const Boot& boot, const std::string& path);

}  // namespace analysis
