#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "formats/EepromImage.h"
#include "formats/FuseIdText.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/SensorWalk.h"

namespace {

/// Bytes of a module's memory, as many as the table asks for; zeros where they can't be copied.
std::vector<std::uint8_t> CopyOf(CameraPlatformInfoZelvan& info, int roleId, int offset, int length) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::max(length, 0)));
    info.MemCpyCamCalData(roleId, bytes.data(), offset, length);
    return bytes;
}

}  // namespace

int CameraPlatformInfoZelvan::SetFuseIdProp() {
    const Operation self(__func__);
    LOGI(self, "enter");
    const NSCam::IHalSensorList* const sensors = self.sensorList();
    if (sensors == nullptr) {
        return -1;
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = Number(sensor.role());
        const FuseIdDescriptor* const descriptor = self.find(mRoleId2FuseIdDescriptorsMap, roleId);
        if (descriptor == nullptr) {
            return -1;
        }
        const int makerId = GetVendorId(roleId);
        const auto maker = mMakerNames.find(makerId);
        if (maker == mMakerNames.end()) {
            continue;
        }
        const std::vector<std::uint8_t> fuseId =
            CopyOf(*this, roleId, descriptor->fuseIdOffset, descriptor->fuseIdLength);

        const QRCodeDescriptor& qr = mQRCodes[roleId][makerId];
        std::uint8_t flag = 0;
        std::vector<std::uint8_t> qrCode;
        std::optional<std::span<const std::uint8_t>> validQRCode;
        MemCpyCamCalData(roleId, &flag, qr.flagOffset, 1);
        if (flag == formats::kQRCodeValid) {
            LOGI(self, "[QRCODE] qrCodeOffset = 0x%x, qrCodeSize = %d ",
                 static_cast<unsigned>(qr.qrCodeOffset), qr.qrCodeLength);
            qrCode = CopyOf(*this, roleId, qr.qrCodeOffset, qr.qrCodeLength);
            validQRCode = qrCode;
        } else {
            LOGI(self, "[QRCODE] QRCode data for roleId %d is not valid", roleId);
        }

        const std::string value = formats::MakeFuseIdText(maker->second, fuseId, validQRCode);
        property_set(descriptor->propNameLong, value.c_str());
        property_set(descriptor->propName, value.c_str());
        LOGI(self, "[FUSEID] set propertyname[%s] = %s", descriptor->propName, value.c_str());
    }
    LOGI(self, "exit");
    return 0;
}

std::string CameraPlatformInfoZelvan::getPropertyFuseid(int roleId) {
    const Operation self(__func__);
    const auto descriptor = mRoleId2FuseIdDescriptorsMap.find(roleId);
    if (descriptor == mRoleId2FuseIdDescriptorsMap.end()) {
        return {};
    }
    char value[PROPERTY_VALUE_MAX];
    property_get(descriptor->second.propName, value, nullptr);
    LOGI(self, "proertyId:%s \n", value);
    const formats::FuseIdField fuseId = formats::ParseFuseIdText(value);
    LOGI(self, "fuseLen: %d, fuseId:%s \n", fuseId.length, fuseId.hex.c_str());
    return fuseId.hex;
}
