#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "zvcam/fleet/Database.h"

namespace zvcam {

/// Phones of which something is true, and the first few of them.
struct PhoneGroup {
    std::int64_t phones = 0;
    std::vector<std::string> examples;  ///< paths, at most kFleetExamples
};

inline constexpr std::size_t kFleetExamples = 3;

/// What a fleet's database tells at a glance. Texts are those of its tables.
struct FleetSummary {
    struct Source {
        std::string path;     ///< of the list or folder
        std::string shard;    ///< "2/8", or empty
        std::string options;  ///< that changed its phones: "--set 'a=b'", or empty
    };
    struct Ending {
        std::string ended;
        std::string reason;  ///< with "#" for numbers and ids; empty where the boot returned
        PhoneGroup group;
    };
    struct FindingGroup {
        std::string severity;
        std::string about;
        std::string kind;
        PhoneGroup group;
        struct OfModule {
            std::string maker;
            std::string layout;
            std::int64_t phones = 0;
        };
        std::vector<OfModule> modules;  ///< where it is about a module: by maker and layout
    };
    struct ModuleKind {
        std::string name;
        std::string chip;  ///< empty: not fitted
        std::string maker;
        std::string layout;
        /// Modules; unreadable ones; erased ones; those with the layout of another module.
        std::int64_t modules = 0, unreadable = 0, erased = 0, ofOtherModule = 0;
        std::vector<std::int64_t> badRanges;  ///< one for each of `rangeNames`
    };
    struct Calibration {
        std::string what;    ///< a pair, or "stabiliser"
        std::string source;  ///< empty: none
        std::int64_t phones = 0;
    };
    struct RepeatedFuseId {
        std::string module;
        std::string fuseId;
        PhoneGroup group;
    };
    struct ErrorLine {
        std::string operation;
        std::string text;
        std::int64_t lines = 0;
        std::int64_t phones = 0;
    };

    std::vector<Source> sources;
    std::int64_t phones = 0;        ///< entries, whatever became of them
    std::int64_t withErrors = 0;    ///< returned, and at least one finding is an error
    std::int64_t withWarnings = 0;  ///< returned, no finding is an error, at least one a warning
    std::int64_t withNeither = 0;   ///< returned
    std::int64_t notReturned = 0;   ///< booted, whatever the findings
    std::int64_t notBooted = 0;
    std::vector<Ending> endings;         ///< those that returned first, then the commonest
    std::int64_t endedOtherwise = 0;     ///< phones that `endings` has no room for
    std::vector<FindingGroup> findings;  ///< errors first, the commonest first
    std::size_t moreFindings = 0;        ///< kinds that `findings` has no room for
    std::vector<std::string> rangeNames;
    std::vector<ModuleKind> modules;
    std::vector<Calibration> calibration;
    std::vector<RepeatedFuseId> repeatedFuseIds;
    std::int64_t moreRepeatedFuseIds = 0;
    std::vector<ErrorLine> errorLines;
    std::size_t moreErrorLines = 0;
};

/// @param most of findings, fuse ids and error lines.
/// @throws DatabaseError
FleetSummary SummaryOf(Database& database, std::size_t most);

}  // namespace zvcam
