#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Api.h"

namespace NSCam {

/// The camera devices that the platform shows: single sensors and logical devices of several sensors.
/// An instance id that the list does not know has no sensors, no bits, an empty name, and is no
/// multi-sensor device.
class PLATFORM_API ILogicalDeviceList {
  public:
    /// Number of devices; their instance ids run from 0.
    virtual int deviceCount() const = 0;

    /// Sensor ids of a device, master first.
    virtual std::vector<int> sensorIds(int instanceId) const = 0;

    /// Device index of a sensor id; -1 where there is no such sensor.
    virtual int sensorDeviceIndex(int sensorId) const = 0;

    /// Whether a device is made of several sensors. Bit 0 carries the answer.
    virtual unsigned isMultiSensorDevice(int instanceId) const = 0;

    /// The sensors of a device as a mask: bit n stands for sensor index n.
    virtual unsigned sensorBits(int instanceId) const = 0;

    /// Driver name of a device, such as "SENSOR_DRVNAME_HALCYRION_BACK_SAT".
    virtual std::string deviceName(int instanceId) const = 0;

  protected:
    ~ILogicalDeviceList() = default;
};

}  // namespace NSCam

/// Module id of the logical device list.
inline constexpr std::uint32_t MTKCAM_MODULE_LOGICAL_DEVICE_LIST = 0x30001;

/// Yields the logical device list, or null while the platform has none.
using LogicalDeviceListFactory = NSCam::ILogicalDeviceList* (*)();

/// The factory of a platform module.
/// @return null where the platform does not have the module.
PLATFORM_API LogicalDeviceListFactory getMtkcamModuleFactory(std::uint32_t moduleId);
