#include "platforminfo/PlatformAccess.h"

#include "platforminfo/Log.h"

namespace {

template <typename List>
List* OrComplain(List* list, const char* function, const char* complaint) {
    if (list == nullptr) {
        LOG_AS(ANDROID_LOG_ERROR, function, "%s", complaint);
    }
    return list;
}

}  // namespace

NSCam::IHalSensorList* GetSensorList(const char* function, const char* complaint) {
    return OrComplain(NSCam::IHalSensorList::get(), function, complaint);
}

NSCam::ILogicalDeviceList* GetLogicalDeviceList(const char* function, const char* complaint) {
    const LogicalDeviceListFactory factory = getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST);
    return OrComplain(factory == nullptr ? nullptr : factory(), function, complaint);
}
