#pragma once

#include <cstdint>
#include <vector>

#include "platform/IHalSensorList.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

/// The sensor that a device bit addresses: the one whose index is the bit's number. Null where the mask is
/// not exactly one bit, or there is no such sensor.
const SensorDescription* FindSensorByBit(const PhoneDescription& phone, std::uint32_t deviceBit);

/// Device id of an index, sensor or alias; -1 for any other.
tables::DeviceId DeviceIdOf(const PhoneDescription& phone, tables::SensorIndex index);

class HalSensor final : public NSCam::IHalSensor {
  public:
    explicit HalSensor(const SensorDescription& sensor) : mSensor(&sensor) {}
    void sendCommand(int deviceIndex, std::uint32_t command, std::uint32_t argument,
                     std::vector<std::int32_t>& reply) override;

  private:
    const SensorDescription* mSensor;
};

class SensorList final : public NSCam::IHalSensorList {
  public:
    explicit SensorList(const PhoneDescription& phone);

    int sensorCount() const override;
    unsigned deviceBits(int sensorIndex) const override;
    int deviceId(int sensorIndex) const override;
    void querySensorStaticInfo(unsigned deviceBit, NSCam::SensorStaticInfo& info) const override;
    const NSCam::SensorStaticInfo* sensorStaticInfo(int deviceId) const override;
    NSCam::IHalSensor* createSensor(const char* userName, int sensorId) override;

  private:
    const PhoneDescription& mPhone;
    std::vector<NSCam::SensorStaticInfo> mStaticInfo;  ///< by sensor index
    std::vector<HalSensor> mSensors;                   ///< by sensor index
};

}  // namespace virtualphone
