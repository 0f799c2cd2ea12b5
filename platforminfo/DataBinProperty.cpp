#include <string>

#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"

void CameraPlatformInfoZelvan::setDataBinGroupProperty() {
    const Operation self(__func__);
    constexpr const char* kProperty = "vendor.camera.sensor.zv.databin.existmask";
    const std::string value = std::to_string(mDataBinExistMask);
    const int refused = property_set(kProperty, value.c_str()) != 0 ? 1 : 0;
    LOGI(self, "set propertyname[%s] = %s,%d", kProperty, value.c_str(), refused);
}
