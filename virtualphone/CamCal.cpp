#include "virtualphone/CamCal.h"

#include <algorithm>
#include <cstddef>
#include <tuple>

#include "virtualphone/PhoneState.h"

namespace virtualphone {

static_assert(kFocusPointCount == std::tuple_size_v<decltype(CamCal3ARecord::afPoints)>);

int CamCal::readRecord(unsigned deviceBit, CamCalRecordKind kind, CamCal3ARecord& record) {
    const SensorDescription* sensor = FindSensorByBit(mPhone, deviceBit);
    if (kind != CamCalRecordKind::ThreeA || sensor == nullptr || !sensor->autofocus) {
        return -1;
    }
    record.capability = sensor->autofocus->capable ? CAM_CAL_CAPABILITY_AF : 0;
    std::transform(sensor->autofocus->points.begin(), sensor->autofocus->points.end(),
                   record.afPoints.begin(), [](const FocusPoint& point) {
                       return CamCalAfPoint{.distance = point.distance, .lensPosition = point.lensPosition};
                   });
    return 0;
}

std::uint32_t CamCal::readMemory(std::uint32_t sensorId, unsigned deviceBit, std::uint32_t offset,
                                 std::uint32_t length, std::uint8_t* destination) {
    mRecord.eepromReads.push_back(
        {.sensorId = sensorId, .deviceBit = deviceBit, .offset = offset, .length = length});
    const SensorDescription* sensor = FindSensorByBit(mPhone, deviceBit);
    if (sensor == nullptr || !sensor->eeprom || destination == nullptr) {
        return 0;
    }
    const EepromDescription& eeprom = *sensor->eeprom;
    const auto first = std::min<std::size_t>(offset, eeprom.image.size());
    const auto count =
        std::min<std::size_t>({eeprom.image.size() - first, length, eeprom.readReturns.value_or(length)});
    std::copy_n(eeprom.image.begin() + static_cast<std::ptrdiff_t>(first), count, destination);
    return eeprom.readReturns.value_or(static_cast<std::uint32_t>(count));
}

}  // namespace virtualphone

namespace {

virtualphone::CamCal* CurrentCamCal() {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    return phone == nullptr || phone->description.faults.calibrationDriver ? nullptr : &phone->camCal;
}

}  // namespace

CamCalDrvBase* CamCalDrvBase::createInstance() {
    return CurrentCamCal();
}

NSCam::CamCalHelper* NSCam::CamCalHelper::getInstance() {
    return CurrentCamCal();
}
