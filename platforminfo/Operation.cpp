#include "platforminfo/Operation.h"

#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"

namespace {

template <typename List>
List* OrComplain(const Operation& self, List* list, const char* complaint) {
    if (list == nullptr) {
        LOGE(self, "%s", complaint);
    }
    return list;
}

}  // namespace

NSCam::IHalSensorList* Operation::sensorList(const char* complaint) const {
    return OrComplain(*this, NSCam::IHalSensorList::get(), complaint);
}

NSCam::ILogicalDeviceList* Operation::logicalDevices(const char* complaint) const {
    const LogicalDeviceListFactory factory = getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST);
    return OrComplain(*this, factory == nullptr ? nullptr : factory(), complaint);
}

int Operation::update(NSCam::IMetadata& meta, const NSCam::IMetadata::IEntry& entry,
                      const UpdateFailure& failure) const {
    const int error = meta.update(entry.tag(), entry);
    if (error != 0) {
        logRefusal(failure, entry.tag(), error);
    }
    return error;
}

void Operation::logRefusal(const UpdateFailure& failure, NSCam::IMetadata::Tag_t tag, int error) const {
    LOG_AS(failure.priority, *this, "%s:%d err:%d%s", failure.lead, static_cast<int>(tag), error,
           failure.tail);
}
