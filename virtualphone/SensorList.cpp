#include "virtualphone/internal/SensorList.h"

#include <algorithm>
#include <bit>

#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

using record::Query;

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

/// Device bits of an index, sensor or alias; 0 for any other.
tables::DeviceBits DeviceBitsOf(const PhoneDescription& phone, tables::SensorIndex index) {
    if (const SensorDescription* const sensor = FindSensor(phone, index)) {
        return sensor->deviceBits;
    }
    const auto alias = phone.sensorAliases.find(index);
    return alias == phone.sensorAliases.end() ? tables::DeviceBits{} : alias->second.deviceBits;
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
    if (!Fails(Call::Asked) && command == NSCam::SENSOR_CMD_GET_IN_SENSOR_ZOOM) {
        reply = mSensor->inSensorZoom;
    }
    mSink->take(record::Asked{.query = record::Query::SensorCommand,
                              .about = command,
                              .answer = {reply.begin(), reply.end()},
                              .text = {}});
}

SensorList::SensorList(const PhoneDescription& phone, record::EventSink& sink) : mPhone(phone), mSink(sink) {
    for (const SensorDescription& sensor : phone.sensors) {
        FillStaticInfo(sensor, mStaticInfo.emplace_back());
        mSensors.emplace_back(sensor, sink);
    }
}

template <typename Answer>
Answer SensorList::answered(Query query, std::int64_t about, Answer answer, Answer failure) const {
    answer = Fails(Call::Asked) ? failure : answer;
    mSink.take(record::Asked{.query = query, .about = about, .answer = {answer}, .text = {}});
    return answer;
}

int SensorList::sensorCount() const {
    return answered(Query::SensorCount, 0, static_cast<int>(mPhone.sensors.size()));
}

unsigned SensorList::deviceBits(int sensorIndex) const {
    return answered(Query::DeviceBits, sensorIndex,
                    Number(DeviceBitsOf(mPhone, tables::SensorIndex{sensorIndex})));
}

int SensorList::deviceId(int sensorIndex) const {
    return answered(Query::DeviceId, sensorIndex,
                    Number(DeviceIdOf(mPhone, tables::SensorIndex{sensorIndex})), -1);
}

void SensorList::querySensorStaticInfo(unsigned deviceBit, NSCam::SensorStaticInfo& info) const {
    const SensorDescription* const sensor = FindSensorByBit(mPhone, deviceBit);
    if (answered(Query::StaticInfoByBit, deviceBit, sensor == nullptr ? 0 : 1) != 0) {
        FillStaticInfo(*sensor, info);
    }
}

const NSCam::SensorStaticInfo* SensorList::sensorStaticInfo(int deviceId) const {
    const auto sensor = std::find_if(
        mPhone.sensors.begin(), mPhone.sensors.end(),
        [deviceId](const SensorDescription& each) { return each.deviceId == tables::DeviceId{deviceId}; });
    const bool found =
        sensor != mPhone.sensors.end() && !mPhone.faults.staticInfo.contains(tables::DeviceId{deviceId});
    return answered(Query::StaticInfoById, deviceId, found ? 1 : 0) != 0
               ? &mStaticInfo[static_cast<std::size_t>(sensor - mPhone.sensors.begin())]
               : nullptr;
}

NSCam::IHalSensor* SensorList::createSensor(const char*, int sensorId) {
    const tables::SensorIndex index{sensorId};
    const bool found = FindSensor(mPhone, index) != nullptr && !mPhone.faults.sensorObjects.contains(index);
    return answered(Query::SensorObject, sensorId, found ? 1 : 0) != 0
               ? &mSensors[static_cast<std::size_t>(sensorId)]
               : nullptr;
}

}  // namespace virtualphone

NSCam::IHalSensorList* NSCam::IHalSensorList::get() {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr) {
        return nullptr;
    }
    const bool missing =
        virtualphone::Fails(virtualphone::Call::Asked) || phone->description.faults.sensorList;
    phone->sink.take(
        record::Asked{.query = record::Query::SensorList, .answer = {missing ? 0 : 1}, .text = {}});
    return missing ? nullptr : &phone->sensorList;
}
