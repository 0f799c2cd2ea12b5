#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "formats/EepromImage.h"
#include "formats/FuseIdText.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/Lookup.h"
#include "platforminfo/PlatformAccess.h"
#include "platforminfo/SensorWalk.h"

int CameraPlatformInfoZelvan::SetFuseIdProp() {
    LOGI("enter");
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__);
    if (sensors == nullptr) {
        return -1;
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = sensor.roleId();
        const FuseIdDescriptor* const descriptor =
            FindRow(__func__, "mRoleId2FuseIdDescriptorsMap", mRoleId2FuseIdDescriptorsMap, roleId);
        if (descriptor == nullptr) {
            return -1;
        }
        const int makerId = GetVendorId(roleId);
        const auto maker = mMakerNames.find(makerId);
        if (maker == mMakerNames.end()) {
            continue;
        }
        std::array<std::uint8_t, formats::kFuseIdBytes> fuseId{};
        MemCpyCamCalData(roleId, fuseId.data(), descriptor->fuseIdOffset, descriptor->fuseIdLength);

        const QRCodeDescriptor& qr = mQRCodes[roleId][makerId];
        std::uint8_t flag = 0;
        std::array<std::uint8_t, formats::kQRCodeLength> qrCode{};
        std::optional<std::span<const std::uint8_t>> validQRCode;
        MemCpyCamCalData(roleId, &flag, qr.flagOffset, 1);
        if (flag == formats::kQRCodeValid) {
            LOGI("[QRCODE] qrCodeOffset = 0x%x, qrCodeSize = %d ", static_cast<unsigned>(qr.qrCodeOffset),
                 qr.qrCodeLength);
            MemCpyCamCalData(roleId, qrCode.data(), qr.qrCodeOffset, qr.qrCodeLength);
            validQRCode = std::span(qrCode).first(static_cast<std::size_t>(qr.qrCodeLength));
        } else {
            LOGI("[QRCODE] QRCode data for roleId %d is not valid", roleId);
        }

        const std::string value = formats::MakeFuseIdText(
            maker->second, std::span(fuseId).first(static_cast<std::size_t>(descriptor->fuseIdLength)),
            validQRCode);
        property_set(descriptor->propNameLong, value.c_str());
        property_set(descriptor->propName, value.c_str());
        LOGI("[FUSEID] set propertyname[%s] = %s", descriptor->propName, value.c_str());
    }
    LOGI("exit");
    return 0;
}

std::string CameraPlatformInfoZelvan::getPropertyFuseid(int roleId) {
    const auto descriptor = mRoleId2FuseIdDescriptorsMap.find(roleId);
    if (descriptor == mRoleId2FuseIdDescriptorsMap.end()) {
        return {};
    }
    char value[PROPERTY_VALUE_MAX];
    property_get(descriptor->second.propName, value, nullptr);
    LOGI("proertyId:%s \n", value);
    const formats::FuseIdField fuseId = formats::ParseFuseIdText(value);
    LOGI("fuseLen: %d, fuseId:%s \n", fuseId.length, fuseId.hex.c_str());
    return fuseId.hex;
}
