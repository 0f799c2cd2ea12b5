#include <string>

#include "formats/SensorInfoText.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/SensorWalk.h"

int CameraPlatformInfoZelvan::SetSensorInfoProp() {
    const Operation self(__func__);
    const NSCam::IHalSensorList* const sensors = self.sensorList();
    if (sensors == nullptr) {
        return -1;
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = Number(sensor.role());
        const int vendorId = GetVendorId(roleId);
        const int lensId = GetLensId(roleId);
        const int sensorId = GetSensorId(roleId);
        const std::string value = formats::MakeSensorInfoText(vendorId, lensId, sensorId);
        LOGI(self, "[SensorInfo] vendorId = 0x%02x lensId = 0x%02x, sensorId = 0x%02x",
             static_cast<unsigned>(vendorId), static_cast<unsigned>(lensId), static_cast<unsigned>(sensorId));
        const char* const* const propName = self.find(mZVSensorInfoProp, roleId);
        if (propName == nullptr) {
            return -1;
        }
        property_set(*propName, value.c_str());
    }
    return 0;
}
