#include "analysis/DeviceGroups.h"

#include <algorithm>
#include <map>

namespace analysis {

std::vector<SharedTag> SharedTagsOf(const record::BootRecord& boot) {
    std::map<std::uint32_t, std::vector<SharedTag>> byTag;
    const auto merges = record::EventsOf<record::ProviderMerge>(boot);
    for (std::size_t i = 0; i < merges.size(); ++i) {
        for (const record::Tag& tag : merges[i]->metadata) {
            std::vector<SharedTag>& alike = byTag[tag.tag];
            auto found = std::find_if(alike.begin(), alike.end(),
                                      [&](const SharedTag& shared) { return *shared.tag == tag; });
            if (found == alike.end()) {
                found = alike.insert(alike.end(), {.tag = &tag, .merges = {}});
            }
            found->merges.push_back(i);
        }
    }
    std::vector<SharedTag> tags;
    for (auto& [tag, alike] : byTag) {
        std::move(alike.begin(), alike.end(), std::back_inserter(tags));
    }
    return tags;
}

std::vector<SharedStreams> SharedStreamsOf(const record::BootRecord& boot) {
    std::vector<SharedStreams> lists;
    const auto merges = record::EventsOf<record::ProviderMerge>(boot);
    for (std::size_t i = 0; i < merges.size(); ++i) {
        std::vector<OfferedStream> streams = OfferedStreamsOf(merges[i]->metadata);
        if (streams.empty()) {
            continue;
        }
        auto found = std::find_if(lists.begin(), lists.end(),
                                  [&](const SharedStreams& shared) { return shared.streams == streams; });
        if (found == lists.end()) {
            found = lists.insert(lists.end(), {.streams = std::move(streams), .merges = {}});
        }
        found->merges.push_back(i);
    }
    return lists;
}

}  // namespace analysis
