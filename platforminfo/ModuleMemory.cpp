#include <cstdint>
#include <cstring>

#include "platform/CamCalDrv.h"
#include "platform/IHalSensorList.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/Sensors.h"
#include "tables/EepromLayouts.h"

namespace {

/// Reads the whole memory of the module at a sensor index.
/// @return false when not all of it could be read, as without a calibration driver.
bool ReadModule(const Operation& self, const CamCalDrvBase* driver, const NSCam::IHalSensorList& sensors,
                tables::SensorIndex sensorIdx, CamCalAllData& image) {
    const unsigned devBit = Number(DeviceBitOf(sensorIdx));
    NSCam::SensorStaticInfo sensorInfo;
    sensors.querySensorStaticInfo(devBit, sensorInfo);
    LOGI(self, "sensorIdx = 0x%x, dualDevId = 0x%x, sensorId = 0x%x",
         static_cast<unsigned>(Number(sensorIdx)), devBit, sensorInfo.sensorId);
    NSCam::CamCalHelper* const helper = NSCam::CamCalHelper::getInstance();
    image.dataSize = tables::kEepromImageSize;
    return driver != nullptr && helper != nullptr &&
           helper->readMemory(sensorInfo.sensorId, devBit, 0, tables::kEepromImageSize, image.data.data()) ==
               tables::kEepromImageSize;
}

/// @return 0 to 255; 255 also when the byte can't be read.
int ReadIdentityByte(CameraPlatformInfoZelvan& info, int roleId, int offset) {
    std::uint8_t value = 0;
    return info.MemCpyCamCalData(roleId, &value, offset, 1) < 0 ? 255 : value;
}

}  // namespace

CamCalAllData* CameraPlatformInfoZelvan::GetCamCalAllData(int roleId) {
    const Operation self(__func__);
    const CamCalDrvBase* const driver = CamCalDrvBase::createInstance();
    LOGI(self, "enter");
    const int sensorIdx = GetSensorIdxByRoleId(roleId);
    if (sensorIdx < 0) {
        LOGE(self, "GetSensorIdxByRoleId(%d) error!", roleId);
        return nullptr;
    }
    const auto [cached, isNew] = mCamCalData.try_emplace(roleId);
    CamCalAllDataPtr& image = cached->second;
    if (isNew) {
        image = MakeCamCalAllData();
        const NSCam::IHalSensorList* const sensors = NSCam::IHalSensorList::get();
        if (image != nullptr && sensors != nullptr &&
            !ReadModule(self, driver, *sensors, tables::SensorIndex{sensorIdx}, *image)) {
            LOGE(self, "GetCamCalCalDataV2 get all data error : roleID = %d", roleId);
            image.reset();
        }
    }
    LOGI(self, "exit");
    return image.get();
}

int CameraPlatformInfoZelvan::MemCpyCamCalData(int roleId, void* dst, int offset, int size) {
    const Operation self(__func__);
    const auto copy = [&] {
        if (dst == nullptr) {
            return -1;
        }
        const CamCalAllData* const image = GetCamCalAllData(roleId);
        if (image == nullptr) {
            LOGE(self, "calAllData is NULL!");
            return -1;
        }
        const std::uint32_t end = static_cast<std::uint32_t>(offset) + static_cast<std::uint32_t>(size);
        if (offset < 0 || size < 0 || end > image->dataSize) {
            LOGE(self, "(offset + size) = %d, calAllData->dataSize = %d", static_cast<int>(end),
                 static_cast<int>(image->dataSize));
            return -1;
        }
        std::memcpy(dst, image->data.data() + offset, static_cast<std::size_t>(size));
        return 0;
    };
    LOGI(self, "enter");
    const int ret = copy();
    LOGI(self, "exit : ret = %d", ret);
    return ret;
}

int CameraPlatformInfoZelvan::GetVendorId(int roleId) {
    return ReadIdentityByte(*this, roleId, tables::kVendorIdOffset);
}

int CameraPlatformInfoZelvan::GetLensId(int roleId) {
    return ReadIdentityByte(*this, roleId, tables::kLensIdOffset);
}

int CameraPlatformInfoZelvan::GetSensorId(int roleId) {
    return ReadIdentityByte(*this, roleId, tables::kSensorIdOffset);
}
