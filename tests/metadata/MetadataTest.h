#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/IMetadata.h"
#include "platforminfo/Entry.h"
#include "tables/PublishedTags.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

using NSCam::IMetadata;
using Lines = std::vector<std::string>;

/// A small phone, a fresh plug-in, and a metadata set for its updaters.
struct Updating {
    explicit Updating(const PhoneBuilder& fitted = {}) : phone(fitted) {}
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

inline Faults FaultsOf(const Refusals& refusals) {
    Faults faults;
    for (const Refusal& refusal : refusals) {
        faults.metadataUpdate.insert({refusal.tag, -1 - static_cast<int>(faults.metadataUpdate.size())});
    }
    return faults;
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
