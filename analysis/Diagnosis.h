#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/Boot.h"
#include "analysis/Calibration.h"
#include "analysis/Devices.h"
#include "analysis/Modules.h"
#include "analysis/Steps.h"

namespace analysis {

/// Something that a person who brings the phone up has to know, in words that need no look-up.
struct Finding {
    enum class Severity {
        Error,    ///< something is broken or missing
        Warning,  ///< something works, but not as it looks
    };
    Severity severity = Severity::Error;
    std::string about;  ///< "front main", "wide and tele"
    std::string words;
};

/// Everything that a boot tells of its phone.
struct Diagnosis {
    std::vector<Module> modules;
    std::vector<PairDecision> pairs;
    std::optional<StabiliserDecision> stabiliser;
    /// Why no module was named; empty where one was, and where the boot did not come to it.
    std::string noModules;
    std::vector<Device> devices;
    std::map<std::uint32_t, record::TagSet> endStates;  ///< by provider id
    std::vector<Finding> findings;                      ///< the worst first
    /// Faults of the description that the boot never came across.
    std::vector<std::string> idleFaults;
    std::size_t logLines = 0;
    std::size_t errorLines = 0;
    std::size_t errorLinesOnEveryPhone = 0;
    std::size_t storedProperties = 0;
};

/// The diagnosis holds pointers into `boot`.
Diagnosis Diagnose(const Boot& boot);

/// What is wrong with the memory of a module that has been read.
std::vector<Finding> MemoryFindings(const Module& module);

/// Faults of the description that the boot never came across, as the phone file names them:
/// "sensorDrivers: 4".
std::vector<std::string> IdleFaults(const Boot& boot);

}  // namespace analysis
