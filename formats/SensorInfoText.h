#pragma once

#include <string>

namespace formats {

/// The value of a sensor info property: the identity bytes of a module as "03, 1A, 07".
/// @param vendorId, lensId, sensorId 0 to 255; 255 stands for a byte that could not be read.
std::string MakeSensorInfoText(int vendorId, int lensId, int sensorId);

}  // namespace formats
