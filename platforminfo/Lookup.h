#pragma once

#include <bit>
#include <map>

#include "platforminfo/Log.h"

/// The row of a fixed table, or null after an error line in the name of `function`.
template <typename Row>
const Row* FindRow(const char* function, const char* tableName, const std::map<int, Row>& table, int key) {
    const auto found = table.find(key);
    if (found == table.end()) {
        LOG_AS(ANDROID_LOG_ERROR, function, "find %s[%d] error!", tableName, key);
        return nullptr;
    }
    return &found->second;
}

/// Number of the lowest set bit of a device mask, or -1 for an empty mask.
constexpr int LowestSetBit(unsigned mask) {
    return mask == 0 ? -1 : std::countr_zero(mask);
}
