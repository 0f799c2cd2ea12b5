#pragma once

#include <array>
#include <cstddef>

#include "record/BootRecord.h"

namespace record {

/// What reports and databases call the values of `Ended::How`, in their order.
inline constexpr std::array<const char*, 5> kEndingNames = {"returned", "threw", "signal", "exited",
                                                            "timeout"};

inline const char* EndingName(Ended::How how) {
    return kEndingNames[static_cast<std::size_t>(how)];
}

}  // namespace record
