#pragma once

#include <cstdint>

#include "platform/CamCalDrv.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/Record.h"

namespace virtualphone {

/// The calibration driver and its raw access, in one object.
class CamCal final : public CamCalDrvBase, public NSCam::CamCalHelper {
  public:
    CamCal(const PhoneDescription& phone, Record& record) : mPhone(phone), mRecord(record) {}

    void release() override {}
    int readRecord(unsigned deviceBit, CamCalRecordKind kind, CamCal3ARecord& record) override;
    std::uint32_t readMemory(std::uint32_t sensorId, unsigned deviceBit, std::uint32_t offset,
                             std::uint32_t length, std::uint8_t* destination) override;

  private:
    const PhoneDescription& mPhone;
    Record& mRecord;
};

}  // namespace virtualphone
