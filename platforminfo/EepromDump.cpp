#include <cstdint>
#include <cstdio>

#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CFile.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/SensorWalk.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"

namespace {

void WriteAsText(const CamCalAllData& image, std::FILE* file) {
    for (std::uint32_t i = 0; i < image.dataSize; ++i) {
        std::fprintf(file, "0x%04x = 0x%02x\n", i, image.data[i]);
    }
}

}  // namespace

int CameraPlatformInfoZelvan::DumpEepromRawData() {
    const Operation self(__func__);
    const NSCam::IHalSensorList* const sensors = NSCam::IHalSensorList::get();
    if (property_get_int32(tables::kEepromDumpProperty, 0) == 0) {
        return 0;
    }
    LOGI(self, "DumpEepromRawData +");
    if (sensors != nullptr) {
        for (SensorWalk sensor(*this, *sensors); sensor.next();) {
            const int roleId = Number(sensor.role());
            const char* const* const roleName = self.find(mRoleId2ModuleName, roleId);
            if (roleName == nullptr) {
                return -1;
            }
            char path[64];
            std::snprintf(path, sizeof(path), "%s%s", tables::kEepromDumpPath, *roleName);
            const CamCalAllData* const image = GetCamCalAllData(roleId);
            if (image == nullptr) {
                continue;
            }
            const CFilePtr file = OpenForWriting(path);
            if (file != nullptr) {
                WriteAsText(*image, file.get());
            }
        }
    }
    LOGI(self, "DumpEepromRawData -");
    return 0;
}
