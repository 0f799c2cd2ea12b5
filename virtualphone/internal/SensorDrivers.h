#pragma once

#include <vector>

#include "platform/ImgSensorDrv.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

class SensorDriver final : public ImgSensorDrv {
  public:
    explicit SensorDriver(const SensorDescription& sensor);
    const ImgSensorDrvInfo& getDrvInfo() const override { return mInfo; }

  private:
    ImgSensorDrvInfo mInfo{};
};

/// The drivers of all sensors, by sensor index.
class SensorDrivers {
  public:
    explicit SensorDrivers(const PhoneDescription& phone);
    /// Null for an index that is no sensor or whose driver is missing.
    ImgSensorDrv* driver(int sensorIndex);

  private:
    const PhoneDescription& mPhone;
    std::vector<SensorDriver> mDrivers;
};

}  // namespace virtualphone
