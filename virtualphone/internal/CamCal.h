#pragma once

#include <cstdint>

#include "platform/CamCalDrv.h"
#include "record/Recorder.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

/// The calibration driver and its raw access, in one object.
class CamCal final : public CamCalDrvBase, public NSCam::CamCalHelper {
  public:
    CamCal(const PhoneDescription& phone, record::EventSink& sink) : mPhone(phone), mSink(sink) {}

    void release() override {}
    int readRecord(unsigned deviceBit, CamCalRecordKind kind, CamCal3ARecord& record) override;
    std::uint32_t readMemory(std::uint32_t sensorId, unsigned deviceBit, std::uint32_t offset,
                             std::uint32_t length, std::uint8_t* destination) override;

  private:
    std::uint32_t copyMemory(const SensorDescription* sensor, std::uint32_t offset, std::uint32_t length,
                             std::uint8_t* destination) const;

    const PhoneDescription& mPhone;
    record::EventSink& mSink;
};

}  // namespace virtualphone
