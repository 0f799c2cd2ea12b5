#include "formats/SensorInfoText.h"

#include <cstdio>

namespace formats {

std::string MakeSensorInfoText(int vendorId, int lensId, int sensorId) {
    char text[12];
    std::snprintf(text, sizeof(text), "%02X, %02X, %02X", static_cast<unsigned>(vendorId) & 0xFFU,
                  static_cast<unsigned>(lensId) & 0xFFU, static_cast<unsigned>(sensorId) & 0xFFU);
    return text;
}

}  // namespace formats
