#pragma once

#include <bit>
#include <optional>

#include "platform/IHalSensorList.h"
#include "platform/ImgSensorDrv.h"
#include "tables/Numberings.h"

/// The platform's numberings of a sensor, one from the other.

/// Index of the first sensor of a mask, or -1 for an empty one.
constexpr tables::SensorIndex FirstSensorOf(tables::DeviceBits bits) {
    const unsigned mask = Number(bits);
    return tables::SensorIndex{mask == 0 ? -1 : std::countr_zero(mask)};
}

/// The device bit by which the calibration driver addresses a sensor.
constexpr tables::DeviceBits DeviceBitOf(tables::SensorIndex index) {
    return tables::DeviceBits{1U << (static_cast<unsigned>(Number(index)) & 31U)};
}

/// The driver of a sensor; null where the platform has none.
inline const ImgSensorDrv* DriverOf(tables::SensorIndex index) {
    return ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(Number(index)));
}

/// The first sensor of a device id. The list's count is asked again before each step.
inline std::optional<tables::SensorIndex> FindSensor(const NSCam::IHalSensorList& sensors,
                                                     tables::DeviceId deviceId) {
    for (int index = 0; index < sensors.sensorCount(); ++index) {
        if (sensors.deviceId(index) == Number(deviceId)) {
            return tables::SensorIndex{index};
        }
    }
    return std::nullopt;
}
