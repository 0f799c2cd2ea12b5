#include "virtualphone/internal/CamCal.h"

#include <algorithm>
#include <cstddef>
#include <tuple>

#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

static_assert(kFocusPointCount == std::tuple_size_v<decltype(CamCal3ARecord::afPoints)>);

int CamCal::readRecord(unsigned deviceBit, CamCalRecordKind kind, CamCal3ARecord& record) {
    const SensorDescription* sensor = FindSensorByBit(mPhone, deviceBit);
    const bool known = !Fails(Call::AutofocusRead) && kind == CamCalRecordKind::ThreeA && sensor != nullptr &&
                       sensor->autofocus;
    mSink.take(record::AutofocusRead{.deviceBit = deviceBit, .succeeded = known});
    if (!known) {
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
    const std::uint32_t read =
        Fails(Call::EepromRead) ? 0
                                : copyMemory(FindSensorByBit(mPhone, deviceBit), offset, length, destination);
    mSink.take(record::EepromRead{
        .sensorId = sensorId, .deviceBit = deviceBit, .offset = offset, .length = length, .read = read});
    return read;
}

std::uint32_t CamCal::copyMemory(const SensorDescription* sensor, std::uint32_t offset, std::uint32_t length,
                                 std::uint8_t* destination) const {
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

/// The driver and its helper are one object, with one fault.
virtualphone::CamCal* CurrentCamCal(record::Query query) {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr) {
        return nullptr;
    }
    const bool missing =
        virtualphone::Fails(virtualphone::Call::Asked) || phone->description.faults.calibrationDriver;
    phone->sink.take(record::Asked{.query = query, .answer = {missing ? 0 : 1}, .text = {}});
    return missing ? nullptr : &phone->camCal;
}

}  // namespace

CamCalDrvBase* CamCalDrvBase::createInstance() {
    return CurrentCamCal(record::Query::CalibrationDriver);
}

NSCam::CamCalHelper* NSCam::CamCalHelper::getInstance() {
    return CurrentCamCal(record::Query::CalibrationHelper);
}
