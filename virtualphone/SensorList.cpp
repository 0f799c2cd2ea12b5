#include "virtualphone/SensorList.h"

#include <bit>

#include "virtualphone/PhoneState.h"

namespace virtualphone {

namespace {

void FillStaticInfo(const SensorDescription& sensor, NSCam::SensorStaticInfo& info) {
    info.sensorId = sensor.sensorId;
    info.pixelArrayWidth = sensor.pixelArray.width;
    info.pixelArrayHeight = sensor.pixelArray.height;
    info.captureWidth = sensor.captureSize.width;
    info.captureHeight = sensor.captureSize.height;
}

bool IsSensor(const PhoneDescription& phone, int index) {
    return index >= 0 && index < static_cast<int>(phone.sensors.size());
}

}  // namespace

const SensorDescription* FindSensorByBit(const PhoneDescription& phone, std::uint32_t deviceBit) {
    if (!std::has_single_bit(deviceBit)) {
        return nullptr;
    }
    const int index = std::countr_zero(deviceBit);
    return IsSensor(phone, index) ? &phone.sensors[static_cast<std::size_t>(index)] : nullptr;
}

int DeviceIdOf(const PhoneDescription& phone, int index) {
    if (IsSensor(phone, index)) {
        return phone.sensors[static_cast<std::size_t>(index)].deviceId;
    }
    const auto alias = phone.sensorAliases.find(index);
    return alias == phone.sensorAliases.end() ? -1 : alias->second.deviceId;
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
    if (IsSensor(mPhone, sensorIndex)) {
        return mPhone.sensors[static_cast<std::size_t>(sensorIndex)].deviceBits;
    }
    const auto alias = mPhone.sensorAliases.find(sensorIndex);
    return alias == mPhone.sensorAliases.end() ? 0 : alias->second.deviceBits;
}

int SensorList::deviceId(int sensorIndex) const {
    return DeviceIdOf(mPhone, sensorIndex);
}

void SensorList::querySensorStaticInfo(unsigned deviceBit, NSCam::SensorStaticInfo& info) const {
    if (const SensorDescription* sensor = FindSensorByBit(mPhone, deviceBit)) {
        FillStaticInfo(*sensor, info);
    }
}

const NSCam::SensorStaticInfo* SensorList::sensorStaticInfo(int deviceId) const {
    if (mPhone.faults.staticInfo.contains(deviceId)) {
        return nullptr;
    }
    for (std::size_t i = 0; i < mPhone.sensors.size(); ++i) {
        if (mPhone.sensors[i].deviceId == deviceId) {
            return &mStaticInfo[i];
        }
    }
    return nullptr;
}

NSCam::IHalSensor* SensorList::createSensor(const char*, int sensorId) {
    if (!IsSensor(mPhone, sensorId) || mPhone.faults.sensorObjects.contains(sensorId)) {
        return nullptr;
    }
    return &mSensors[static_cast<std::size_t>(sensorId)];
}

}  // namespace virtualphone

NSCam::IHalSensorList* NSCam::IHalSensorList::get() {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    return phone == nullptr || phone->description.faults.sensorList ? nullptr : &phone->sensorList;
}
