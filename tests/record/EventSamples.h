#pragma once

#include <limits>
#include <vector>

#include "record/Events.h"

/// One event of every kind, with odd values.
inline std::vector<record::Event> EventSamples() {
    using namespace record;
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    return {Asked{Query::SensorIds, -6, {0, 3}, ""},
            Asked{Query::DeviceName, 6, {}, "BACK"},
            PropertyAsked{"unset", {}},
            LogLine{6, "T", "(12)[Op] one"},
            PropertySet{"n", "v\n", true},
            PathOpened{"/a"},
            EepromRead{1799, 1, 0, 16, 16},
            AutofocusRead{1, false},
            PropertyAsked{"n", "v\n"},
            ProviderAsked{7},
            TagStored{0x91010021, -5, 1},
            LogLine{4, "T", "two"},
            ProviderMerge{0x40007,
                          {{1, TagValues()},
                           {2, TagValues(std::vector{0.6F, -kInfinity})},
                           {3, TagValues(std::vector<std::int64_t>{-9000000000})},
                           {4, TagValues(std::vector<Blob>{{1, 0xAB}, {}})},
                           {5, TagValues(std::vector<std::uint8_t>{255})},
                           {0x91010021, TagValues(std::vector<std::int32_t>{60})}}},
            EepromRead{1, 2, 3, 0xFFFFFFFF, 0},
            HandOver{{1, 0xFF}}};
}
