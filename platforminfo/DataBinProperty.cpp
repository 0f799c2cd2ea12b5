#include <string>

#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "tables/PublishedProperties.h"

void CameraPlatformInfoZelvan::setDataBinGroupProperty() {
    const Operation self(__func__);
    const std::string value = std::to_string(mDataBinExistMask);
    const int refused = property_set(tables::kDataBinExistMaskProperty, value.c_str()) != 0 ? 1 : 0;
    LOGI(self, "set propertyname[%s] = %s,%d", tables::kDataBinExistMaskProperty, value.c_str(), refused);
}
