#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Api.h"

/// Number of output modes that a sensor driver describes.
inline constexpr int SENSOR_MODE_COUNT = 20;

/// Index of a sensor in the kernel driver's order.
enum IMGSENSOR_SENSOR_IDX : int {};

/// What a sensor driver says of its sensor. Only the output sizes of the modes are named here; what stands
/// before them is the driver's own.
struct ImgSensorDrvInfo {
    std::array<std::uint8_t, 1524> driverPrivate;
    /// Output size of each mode in pixels; 0 by 0 for a mode that the sensor does not have.
    std::array<std::uint16_t, SENSOR_MODE_COUNT> outputWidth;
    std::array<std::uint16_t, SENSOR_MODE_COUNT> outputHeight;
};
static_assert(offsetof(ImgSensorDrvInfo, outputWidth) == 1524);
static_assert(offsetof(ImgSensorDrvInfo, outputHeight) == 1564);

/// The driver of one sensor.
class PLATFORM_API ImgSensorDrv {
  public:
    /// @return null where no sensor has this index.
    static ImgSensorDrv* getInstance(IMGSENSOR_SENSOR_IDX sensorIndex);

    virtual const ImgSensorDrvInfo& getDrvInfo() const = 0;

  protected:
    ~ImgSensorDrv() = default;
};
