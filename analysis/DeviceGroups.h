#pragma once

#include <cstddef>
#include <vector>

#include "analysis/TagContents.h"
#include "record/BootRecord.h"

/// What several devices have alike, said once.
namespace analysis {

/// A tag and its values, and the merges that carry them: positions among the merges of the boot, which are
/// those of their devices.
struct SharedTag {
    const record::Tag* tag = nullptr;
    std::vector<std::size_t> merges;
};

/// By ascending tag, the values of the first merge first. They point into `boot`.
std::vector<SharedTag> SharedTagsOf(const record::BootRecord& boot);

/// A list of streams, and the merges that offer it.
struct SharedStreams {
    std::vector<OfferedStream> streams;
    std::vector<std::size_t> merges;
};

/// In the order of their first merges; merges that offer none stand in no list.
std::vector<SharedStreams> SharedStreamsOf(const record::BootRecord& boot);

}  // namespace analysis
