#include <string>

#include "formats/AFInfoText.h"
#include "platform/CamCalDrv.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/PlatformAccess.h"
#include "platforminfo/SensorWalk.h"

namespace {

std::string AFInfoOf(const CamCal3ARecord& record) {
    const auto& [first, second] = record.afPoints;
    return formats::MakeAFInfoText({.distance = first.distance, .lensPosition = first.lensPosition},
                                   {.distance = second.distance, .lensPosition = second.lensPosition});
}

}  // namespace

int CameraPlatformInfoZelvan::SetAFInfoProp() {
    CamCalDrvBase* const driver = CamCalDrvBase::createInstance();
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__);
    if (sensors == nullptr) {
        return -1;
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = sensor.roleId();
        const unsigned devBit = 1U << (static_cast<unsigned>(sensor.index()) & 31U);
        CamCal3ARecord record;
        if (driver == nullptr || driver->readRecord(devBit, CamCalRecordKind::ThreeA, record) != 0) {
            LOGI("[AFINFO] fail to read cam cal for roleID(%d)", roleId);
            continue;
        }
        if ((record.capability & CAM_CAL_CAPABILITY_AF) == 0) {
            LOGI("[AFINFO] do not support AF for roleID(%d)", roleId);
            continue;
        }
        const std::string value = AFInfoOf(record);
        // A role without a property skips only its own sensor here.
        const auto propName = mAFInfoProp.find(roleId);
        if (propName == mAFInfoProp.end()) {
            LOGE("[AFINFO] roleID(%d) set property name failed ", roleId);
            continue;
        }
        property_set(propName->second, value.c_str());
        LOGI("[AFINFO] set afinfo property for roleID(%d): %s", roleId, value.c_str());
    }
    return 0;
}
