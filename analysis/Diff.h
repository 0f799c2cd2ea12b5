#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/Boot.h"

namespace analysis {

/// One thing that two boots do not have in common.
struct Difference {
    std::string item;
    std::optional<std::string> left;  ///< none: the left boot lacks it
    std::optional<std::string> right;
};

/// A file that is not the same after both boots; null: that boot did not write it.
struct FileDifference {
    std::string path;
    const record::ChangedFile* left = nullptr;
    const record::ChangedFile* right = nullptr;
};

/// A tag of devices that both boots have, and that differs alike for all of them; null: that boot did not
/// publish it.
struct TagDifference {
    std::vector<std::string> devices;  ///< "4", "4/3"
    std::uint32_t tag = 0;
    const record::TagValues* left = nullptr;
    const record::TagValues* right = nullptr;
};

/// What a step logged in one boot only, thread ids and addresses left out.
struct LogDifference {
    std::string step;                  ///< "MetadataUpdateScaler"
    std::vector<std::string> devices;  ///< those whose update differs alike; empty outside of updates
    std::vector<std::string> left;
    std::vector<std::string> right;
    bool reordered = false;  ///< the same lines in another order
};

/// What differs between two boots. Thread ids, addresses and the phones' names do not count.
struct Differences {
    std::vector<Difference> endings;  ///< how the boots ended
    std::vector<Difference> properties;
    std::vector<FileDifference> files;
    std::vector<Difference> devices;  ///< that one boot alone has
    std::vector<TagDifference> tags;
    std::vector<Difference> handOvers;
    std::vector<LogDifference> log;

    bool none() const;
};

/// The differences hold pointers into both boots.
Differences Compare(const Boot& left, const Boot& right);

/// A log line without what differs from run to run: the thread id, and addresses.
std::string WithoutRunNumbers(const record::LogLine& line);

}  // namespace analysis
