#include "virtualphone/LogicalDevices.h"

#include "virtualphone/PhoneState.h"

namespace virtualphone {

const LogicalDeviceDescription& LogicalDeviceList::device(int instanceId) const {
    static const LogicalDeviceDescription kUnknown;
    return instanceId >= 0 && instanceId < deviceCount()
               ? mPhone.logicalDevices[static_cast<std::size_t>(instanceId)]
               : kUnknown;
}

int LogicalDeviceList::deviceCount() const {
    return static_cast<int>(mPhone.logicalDevices.size());
}

std::vector<int> LogicalDeviceList::sensorIds(int instanceId) const {
    std::vector<int> ids;
    for (const tables::MemberSensorId member : device(instanceId).members) {
        ids.push_back(Number(member));
    }
    return ids;
}

int LogicalDeviceList::sensorDeviceIndex(int sensorId) const {
    const auto stated = mPhone.sensorDeviceIndexes.find(tables::MemberSensorId{sensorId});
    return stated == mPhone.sensorDeviceIndexes.end()
               ? Number(DeviceIdOf(mPhone, tables::SensorIndex{sensorId}))
               : Number(stated->second);
}

unsigned LogicalDeviceList::isMultiSensorDevice(int instanceId) const {
    return device(instanceId).multiSensor ? 1 : 0;
}

unsigned LogicalDeviceList::sensorBits(int instanceId) const {
    return Number(device(instanceId).sensorBits);
}

std::string LogicalDeviceList::deviceName(int instanceId) const {
    return device(instanceId).name;
}

}  // namespace virtualphone

namespace {

NSCam::ILogicalDeviceList* CurrentLogicalDeviceList() {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    return phone == nullptr || phone->description.faults.logicalDeviceList ? nullptr : &phone->logicalDevices;
}

}  // namespace

LogicalDeviceListFactory getMtkcamModuleFactory(std::uint32_t moduleId) {
    const virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr || phone->description.faults.moduleFactory ||
        moduleId != MTKCAM_MODULE_LOGICAL_DEVICE_LIST) {
        return nullptr;
    }
    return CurrentLogicalDeviceList;
}
