#pragma once

#include <cstdint>
#include <vector>

#include "platform/IHalSensorList.h"
#include "record/Recorder.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

/// The sensor that a device bit addresses: the one whose index is the bit's number. Null where the mask is
/// not exactly one bit, or there is no such sensor.
const SensorDescription* FindSensorByBit(const PhoneDescription& phone, std::uint32_t deviceBit);

/// Device id of an index, sensor or alias; -1 for any other.
tables::DeviceId DeviceIdOf(const PhoneDescription& phone, tables::SensorIndex index);

class HalSensor final : public NSCam::IHalSensor {
  public:
    HalSensor(const SensorDescription& sensor, record::EventSink& sink) : mSensor(&sensor), mSink(&sink) {}
    void sendCommand(int deviceIndex, std::uint32_t command, std::uint32_t argument,
                     std::vector<std::int32_t>& reply) override;

  private:
    const SensorDescription* mSensor;
    record::EventSink* mSink;
};

class SensorList final : public NSCam::IHalSensorList {
  public:
    SensorList(const PhoneDescription& phone, record::EventSink& sink);

    int sensorCount() const override;
    unsigned deviceBits(int sensorIndex) const override;
    int deviceId(int sensorIndex) const override;
    void querySensorStaticInfo(unsigned deviceBit, NSCam::SensorStaticInfo& info) const override;
    const NSCam::SensorStaticInfo* sensorStaticInfo(int deviceId) const override;
    NSCam::IHalSensor* createSensor(const char* userName, int sensorId) override;

  private:
    template <typename Answer>
    Answer answered(record::Query query, std::int64_t about, Answer answer, Answer failure = {}) const;

    const PhoneDescription& mPhone;
    record::EventSink& mSink;
    std::vector<NSCam::SensorStaticInfo> mStaticInfo;  ///< by sensor index
    std::vector<HalSensor> mSensors;                   ///< by sensor index
};

}  // namespace virtualphone
