#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/IMetadata.h"
#include "platforminfo/Entry.h"
#include "tables/PublishedTags.h"
#include "tests/support/Describe.h"
#include "tests/support/SmallPhones.h"

using NSCam::IMetadata;
using Lines = std::vector<std::string>;

/// A small phone, a fresh plug-in, and a metadata set for its updaters.
struct Updating {
    explicit Updating(const std::string& json) : phone(json) {}
    Tags tags() const { return DescribeAll(meta); }

    TestPhone phone;
    TestPlugin plugin;
    IMetadata meta;
};

/// Tags whose updates a phone refuses, with the text that each refusal's log line begins with. The error
/// codes are -1 for the first one, -2 for the second and so on.
struct Refusal {
    std::string lead;
    std::uint32_t tag;
};
using Refusals = std::vector<Refusal>;

/// The phone's "faults" key.
inline std::string RefusalKeys(const Refusals& refusals) {
    std::string updates;
    for (std::size_t i = 0; i < refusals.size(); ++i) {
        updates += (i == 0 ? "\"" : ", \"") + TagText(refusals[i].tag) + "\": -" + std::to_string(i + 1);
    }
    return R"("faults": {"metadataUpdate": {)" + updates + "}}";
}

/// The lines that are expected of an operation that stores each of the tags once, in this order.
inline Lines RefusalLines(const Refusals& refusals) {
    Lines lines;
    for (std::size_t i = 0; i < refusals.size(); ++i) {
        lines.push_back(refusals[i].lead + ":" + std::to_string(static_cast<std::int32_t>(refusals[i].tag)) +
                        " err:-" + std::to_string(i + 1));
    }
    return lines;
}
