#include "virtualphone/internal/LogicalDevices.h"

#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

using record::Query;

template <typename Answer>
Answer LogicalDeviceList::answered(Query query, std::int64_t about, Answer answer, Answer failure) const {
    answer = Fails(Call::Asked) ? failure : answer;
    mSink.take(record::Asked{.query = query, .about = about, .answer = {answer}, .text = {}});
    return answer;
}

const LogicalDeviceDescription& LogicalDeviceList::device(int instanceId) const {
    static const LogicalDeviceDescription kUnknown;
    return instanceId >= 0 && static_cast<std::size_t>(instanceId) < mPhone.logicalDevices.size()
               ? mPhone.logicalDevices[static_cast<std::size_t>(instanceId)]
               : kUnknown;
}

int LogicalDeviceList::deviceCount() const {
    return answered(Query::DeviceCount, 0, static_cast<int>(mPhone.logicalDevices.size()));
}

std::vector<int> LogicalDeviceList::sensorIds(int instanceId) const {
    std::vector<int> ids;
    if (!Fails(Call::Asked)) {
        for (const tables::MemberSensorId member : device(instanceId).members) {
            ids.push_back(Number(member));
        }
    }
    mSink.take(record::Asked{
        .query = Query::SensorIds, .about = instanceId, .answer = {ids.begin(), ids.end()}, .text = {}});
    return ids;
}

int LogicalDeviceList::sensorDeviceIndex(int sensorId) const {
    const auto stated = mPhone.sensorDeviceIndexes.find(tables::MemberSensorId{sensorId});
    return answered(Query::SensorDeviceIndex, sensorId,
                    stated == mPhone.sensorDeviceIndexes.end()
                        ? Number(DeviceIdOf(mPhone, tables::SensorIndex{sensorId}))
                        : Number(stated->second),
                    -1);
}

unsigned LogicalDeviceList::isMultiSensorDevice(int instanceId) const {
    return answered(Query::IsMultiSensorDevice, instanceId, device(instanceId).multiSensor ? 1U : 0U);
}

unsigned LogicalDeviceList::sensorBits(int instanceId) const {
    return answered(Query::SensorBits, instanceId, Number(device(instanceId).sensorBits));
}

std::string LogicalDeviceList::deviceName(int instanceId) const {
    std::string name = Fails(Call::Asked) ? "" : device(instanceId).name;
    mSink.take(record::Asked{.query = Query::DeviceName, .about = instanceId, .answer = {}, .text = name});
    return name;
}

}  // namespace virtualphone

namespace {

/// Says that the list was asked for, and whether there is one.
void RecordList(virtualphone::PhoneState& phone, bool found) {
    phone.sink.take(
        record::Asked{.query = record::Query::LogicalDeviceList, .answer = {found ? 1 : 0}, .text = {}});
}

NSCam::ILogicalDeviceList* CurrentLogicalDeviceList() {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr) {
        return nullptr;
    }
    const bool found =
        !virtualphone::Fails(virtualphone::Call::Asked) && !phone->description.faults.logicalDeviceList;
    RecordList(*phone, found);
    return found ? &phone->logicalDevices : nullptr;
}

}  // namespace

LogicalDeviceListFactory getMtkcamModuleFactory(std::uint32_t moduleId) {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr || moduleId != MTKCAM_MODULE_LOGICAL_DEVICE_LIST) {
        return nullptr;
    }
    if (phone->description.faults.moduleFactory) {
        RecordList(*phone, false);
        return nullptr;
    }
    return CurrentLogicalDeviceList;
}
