#include "virtualphone/internal/SensorDrivers.h"

#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

static_assert(kSensorModeCount == SENSOR_MODE_COUNT);

SensorDriver::SensorDriver(const SensorDescription& sensor) {
    for (std::size_t mode = 0; mode < sensor.modes.size(); ++mode) {
        mInfo.outputWidth[mode] = sensor.modes[mode].width;
        mInfo.outputHeight[mode] = sensor.modes[mode].height;
    }
}

SensorDrivers::SensorDrivers(const PhoneDescription& phone)
    : mPhone(phone), mDrivers(phone.sensors.begin(), phone.sensors.end()) {}

ImgSensorDrv* SensorDrivers::driver(int sensorIndex) {
    if (sensorIndex < 0 || sensorIndex >= static_cast<int>(mDrivers.size()) ||
        mPhone.faults.sensorDrivers.contains(tables::SensorIndex{sensorIndex})) {
        return nullptr;
    }
    return &mDrivers[static_cast<std::size_t>(sensorIndex)];
}

}  // namespace virtualphone

ImgSensorDrv* ImgSensorDrv::getInstance(IMGSENSOR_SENSOR_IDX sensorIndex) {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr) {
        return nullptr;
    }
    ImgSensorDrv* const driver =
        virtualphone::Fails(virtualphone::Call::Asked) ? nullptr : phone->sensorDrivers.driver(sensorIndex);
    phone->sink.take(record::Asked{.query = record::Query::SensorDriver,
                                   .about = sensorIndex,
                                   .answer = {driver == nullptr ? 0 : 1},
                                   .text = {}});
    return driver;
}
