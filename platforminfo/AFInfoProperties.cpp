#include <string>

#include "formats/AFInfoText.h"
#include "platform/CamCalDrv.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/SensorWalk.h"
#include "platforminfo/Sensors.h"

namespace {

std::string AFInfoOf(const CamCal3ARecord& record) {
    const auto& [first, second] = record.afPoints;
    return formats::MakeAFInfoText({.distance = first.distance, .lensPosition = first.lensPosition},
                                   {.distance = second.distance, .lensPosition = second.lensPosition});
}

}  // namespace

int CameraPlatformInfoZelvan::SetAFInfoProp() {
    const Operation self(__func__);
    CamCalDrvBase* const driver = CamCalDrvBase::createInstance();
    const NSCam::IHalSensorList* const sensors = self.sensorList();
    if (sensors == nullptr) {
        return -1;
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = Number(sensor.role());
        const unsigned devBit = Number(DeviceBitOf(sensor.index()));
        CamCal3ARecord record;
        if (driver == nullptr || driver->readRecord(devBit, CamCalRecordKind::ThreeA, record) != 0) {
            LOGI(self, "[AFINFO] fail to read cam cal for roleID(%d)", roleId);
            continue;
        }
        if ((record.capability & CAM_CAL_CAPABILITY_AF) == 0) {
            LOGI(self, "[AFINFO] do not support AF for roleID(%d)", roleId);
            continue;
        }
        const std::string value = AFInfoOf(record);
        // A role without a property skips only its own sensor here.
        const auto propName = mAFInfoProp.find(roleId);
        if (propName == mAFInfoProp.end()) {
            LOGE(self, "[AFINFO] roleID(%d) set property name failed ", roleId);
            continue;
        }
        property_set(propName->second, value.c_str());
        LOGI(self, "[AFINFO] set afinfo property for roleID(%d): %s", roleId, value.c_str());
    }
    return 0;
}
