#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ILogicalDeviceList.h"
#include "record/Recorder.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

class LogicalDeviceList final : public NSCam::ILogicalDeviceList {
  public:
    LogicalDeviceList(const PhoneDescription& phone, record::EventSink& sink) : mPhone(phone), mSink(sink) {}

    int deviceCount() const override;
    std::vector<int> sensorIds(int instanceId) const override;
    int sensorDeviceIndex(int sensorId) const override;
    unsigned isMultiSensorDevice(int instanceId) const override;
    unsigned sensorBits(int instanceId) const override;
    std::string deviceName(int instanceId) const override;

  private:
    const LogicalDeviceDescription& device(int instanceId) const;
    template <typename Answer>
    Answer answered(record::Query query, std::int64_t about, Answer answer, Answer failure = {}) const;

    const PhoneDescription& mPhone;
    record::EventSink& mSink;
};

}  // namespace virtualphone
