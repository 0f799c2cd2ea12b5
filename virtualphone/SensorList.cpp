#include "virtualphone/SensorList.h"

#include <bit>

#include "virtualphone/PhoneState.h"

namespace virtualphone {

namespace {

void FillStaticInfo(const SensorDescription& sensor, NSCam::SensorStaticInfo& info) {
    info.sensorId = Number(sensor.chipSensorId);
    info.pixelArrayWidth = sensor.pixelArray.width;
    info.pixelArrayHeight = sensor.pixelArray.height;
    info.captureWidth = sensor.captureSize.width;
    info.captureHeight = sensor.captureSize.height;
}

/// Null for an index that is no sensor.
const SensorDescription* FindSensor(const PhoneDescription& phone, tables::SensorIndex index) {
    const int position = Number(index);
    return position >= 0 && position < static_cast<int>(phone.sensors.size())
               ? &phone.sensors[static_cast<std::size_t>(position)]
               : nullptr;
}

}  // namespace

const SensorDescription* FindSensorByBit(const PhoneDescription& phone, std::uint32_t deviceBit) {
    if (!std::has_single_bit(deviceBit)) {
        return nullptr;
    }
    return FindSensor(phone, tables::SensorIndex{std::countr_zero(deviceBit)});
}

tables::DeviceId DeviceIdOf(const PhoneDescription& phone, tables::SensorIndex index) {
    if (const SensorDescription* const sensor = FindSensor(phone, index)) {
        return sensor->deviceId;
    }
    const auto alias = phone.sensorAliases.find(index);
    return alias == phone.sensorAliases.end() ? SensorAlias().deviceId : alias->second.deviceId;
}

void HalSensor::sendCommand(int, std::uint32_t command, std::uint32_t, std::vector<std::int32_t>& reply) {
    if (command == NSCam::SENSOR_CMD_GET_IN_SENSOR_ZOOM) {
        reply = mSensor->inSensorZoom;
    }
}

SensorList::SensorList(const PhoneDescription& phone) : mPhone(phone) {
    for (const SensorDescription& sensor : phone.sensors) {
        FillStaticInfo(sensor, mStaticInfo.emplace_back());
        mSensors.emplace_back(sensor);
    }
}

int SensorList::sensorCount() const {
    return static_cast<int>(mPhone.sensors.size());
}

unsigned SensorList::deviceBits(int sensorIndex) const {
    const tables::SensorIndex index{sensorIndex};
    if (const SensorDescription* const sensor = FindSensor(mPhone, index)) {
        return Number(sensor->deviceBits);
    }
    const auto alias = mPhone.sensorAliases.find(index);
    return alias == mPhone.sensorAliases.end() ? 0 : Number(alias->second.deviceBits);
}

int SensorList::deviceId(int sensorIndex) const {
    return Number(DeviceIdOf(mPhone, tables::SensorIndex{sensorIndex}));
}

void SensorList::querySensorStaticInfo(unsigned deviceBit, NSCam::SensorStaticInfo& info) const {
    if (const SensorDescription* sensor = FindSensorByBit(mPhone, deviceBit)) {
        FillStaticInfo(*sensor, info);
    }
}

const NSCam::SensorStaticInfo* SensorList::sensorStaticInfo(int deviceId) const {
    if (mPhone.faults.staticInfo.contains(tables::DeviceId{deviceId})) {
        return nullptr;
    }
    for (std::size_t i = 0; i < mPhone.sensors.size(); ++i) {
        if (mPhone.sensors[i].deviceId == tables::DeviceId{deviceId}) {
            return &mStaticInfo[i];
        }
    }
    return nullptr;
}

NSCam::IHalSensor* SensorList::createSensor(const char*, int sensorId) {
    const tables::SensorIndex index{sensorId};
    if (FindSensor(mPhone, index) == nullptr || mPhone.faults.sensorObjects.contains(index)) {
        return nullptr;
    }
    return &mSensors[static_cast<std::size_t>(sensorId)];
}

}  // namespace virtualphone

NSCam::IHalSensorList* NSCam::IHalSensorList::get() {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    return phone == nullptr || phone->description.faults.sensorList ? nullptr : &phone->sensorList;
}
