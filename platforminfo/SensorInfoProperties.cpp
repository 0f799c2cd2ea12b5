#include <string>

#include "formats/SensorInfoText.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/Lookup.h"
#include "platforminfo/PlatformAccess.h"
#include "platforminfo/SensorWalk.h"

int CameraPlatformInfoZelvan::SetSensorInfoProp() {
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__);
    if (sensors == nullptr) {
        return -1;
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = sensor.roleId();
        const int vendorId = GetVendorId(roleId);
        const int lensId = GetLensId(roleId);
        const int sensorId = GetSensorId(roleId);
        const std::string value = formats::MakeSensorInfoText(vendorId, lensId, sensorId);
        LOGI("[SensorInfo] vendorId = 0x%02x lensId = 0x%02x, sensorId = 0x%02x",
             static_cast<unsigned>(vendorId), static_cast<unsigned>(lensId), static_cast<unsigned>(sensorId));
        const char* const* const propName = FindRow(__func__, "mZVSensorInfoProp", mZVSensorInfoProp, roleId);
        if (propName == nullptr) {
            return -1;
        }
        property_set(*propName, value.c_str());
    }
    return 0;
}
