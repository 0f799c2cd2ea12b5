#pragma once

#include <cstdint>
#include <vector>

#include "platform/Api.h"

namespace NSCam {

/// What the platform knows of a sensor before it is opened. The presets mark fields that nothing filled.
struct SensorStaticInfo {
    std::uint32_t sensorId = 0xFFFF;
    std::uint8_t sensorType = 0xFF;
    std::uint8_t colorOrder = 0xFF;
    /// The unbinned pixel array, in pixels.
    std::uint16_t pixelArrayWidth = 0;
    std::uint16_t pixelArrayHeight = 0;
    /// The picture size of still capture, in pixels.
    std::uint16_t captureWidth = 0;
    std::uint16_t captureHeight = 0;
};

/// Sensor command that lists the in-sensor zoom modes. No list, or a first value of 255: the sensor has none.
inline constexpr std::uint32_t SENSOR_CMD_GET_IN_SENSOR_ZOOM = 0x4036;

/// One sensor, ready for commands.
class PLATFORM_API IHalSensor {
  public:
    /// Sends a command to the sensor.
    /// @param deviceIndex the sensor's device index.
    /// @param reply filled by commands that answer with a list; left as it is by others.
    virtual void sendCommand(int deviceIndex, std::uint32_t command, std::uint32_t argument,
                             std::vector<std::int32_t>& reply) = 0;

  protected:
    ~IHalSensor() = default;
};

/// The sensors that the kernel driver found, in its order: position 0 to count - 1 is the sensor index.
class PLATFORM_API IHalSensorList {
  public:
    /// @return null while the platform has no sensor list.
    static IHalSensorList* get();

    virtual int sensorCount() const = 0;

    /// Device bits of a sensor index, one bit a device; 0 for an index that is no sensor.
    virtual unsigned deviceBits(int sensorIndex) const = 0;

    /// Device id of a sensor index (or of a device bit's number); -1 for an index that is no sensor.
    virtual int deviceId(int sensorIndex) const = 0;

    /// Fills `info` with the static information of the sensor that a device bit addresses; leaves it as it is
    /// where the bit addresses none.
    virtual void querySensorStaticInfo(unsigned deviceBit, SensorStaticInfo& info) const = 0;

    /// Static information of the first sensor with this device id.
    /// @return null where there is none. The record lives as long as the list.
    virtual const SensorStaticInfo* sensorStaticInfo(int deviceId) const = 0;

    /// The sensor object of a sensor id, opened under the name of its user.
    /// @return null where there is none. The list owns the object; nothing has to be released.
    virtual IHalSensor* createSensor(const char* userName, int sensorId) = 0;

  protected:
    ~IHalSensorList() = default;
};

}  // namespace NSCam
