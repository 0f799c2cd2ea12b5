#pragma once

#include <string>
#include <vector>

#include "platform/ILogicalDeviceList.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

class LogicalDeviceList final : public NSCam::ILogicalDeviceList {
  public:
    explicit LogicalDeviceList(const PhoneDescription& phone) : mPhone(phone) {}

    int deviceCount() const override;
    std::vector<int> sensorIds(int instanceId) const override;
    int sensorDeviceIndex(int sensorId) const override;
    unsigned isMultiSensorDevice(int instanceId) const override;
    unsigned sensorBits(int instanceId) const override;
    std::string deviceName(int instanceId) const override;

  private:
    const LogicalDeviceDescription& device(int instanceId) const;

    const PhoneDescription& mPhone;
};

}  // namespace virtualphone
