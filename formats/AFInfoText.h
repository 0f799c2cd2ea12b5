#pragma once

#include <cstdint>
#include <string>

namespace formats {

/// One calibrated focus position of a module.
struct AFPoint {
    std::int32_t distance;      ///< as the calibration record has it: ten times the published number
    std::int32_t lensPosition;  ///< of the lens actuator
};

/// The value of an AF info property: "300:123,10:456,", each point as distance divided by 10 (towards zero)
/// and lens position.
std::string MakeAFInfoText(const AFPoint& first, const AFPoint& second);

}  // namespace formats
