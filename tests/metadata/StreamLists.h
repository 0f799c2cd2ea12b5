#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/IMetadata.h"

/// A list's tuples as texts, such as "33 4000 3000 0".
inline std::vector<std::string> Tuples(const NSCam::IMetadata::IEntry& entry, std::size_t size = 4) {
    std::vector<std::string> tuples;
    for (std::size_t i = 0; i < entry.count(); ++i) {
        // Of the two types that lists have, the other one's items read as 0.
        const std::int64_t item = entry.itemAt<std::int32_t>(i) + entry.itemAt<std::int64_t>(i);
        if (i % size == 0) {
            tuples.emplace_back();
        }
        tuples.back() += (i % size == 0 ? "" : " ") + std::to_string(item);
    }
    return tuples;
}

/// Runs of tuples of the same format, by their first and last: "33 4000 3000 0 .. 160 96 0 (42)".
inline std::vector<std::string> Runs(const std::vector<std::string>& tuples) {
    std::vector<std::string> runs;
    for (std::size_t first = 0; first < tuples.size();) {
        const std::string format = tuples[first].substr(0, tuples[first].find(' ') + 1);
        std::size_t end = first + 1;
        while (end < tuples.size() && tuples[end].starts_with(format)) {
            ++end;
        }
        runs.push_back(tuples[first]);
        if (end - first > 1) {
            runs.back() +=
                " .. " + tuples[end - 1].substr(format.size()) + " (" + std::to_string(end - first) + ")";
        }
        first = end;
    }
    return runs;
}
