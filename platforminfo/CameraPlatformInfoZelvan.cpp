#include "platforminfo/CameraPlatformInfoZelvan.h"

CameraPlatformInfoZelvan* CameraPlatformInfoZelvan::CreateInstance() {
    static CameraPlatformInfoZelvan instance;
    return &instance;
}

CameraPlatformInfoZelvan::CameraPlatformInfoZelvan() {
    mRoleId2ModuleName = MakeRoleNames();
    mRoleId2FuseIdDescriptorsMap = MakeFuseIdDescriptors();
    mQRCodes = MakeQRCodeDescriptors();
    mZVSensorInfoProp = MakeSensorInfoProperties();
    mAFInfoProp = MakeAFInfoProperties();
    mMakerNames = MakeMakerNames();
}

CameraPlatformInfoZelvan::~CameraPlatformInfoZelvan() {
    mCamCalData.clear();
}

void CameraPlatformInfoZelvan::ExposureModuleInfo() {
    SetModuleInfoProp();
    // The fuse id properties come before the calibration steps, which match files by them.
    SetFuseIdProp();
    SetSensorInfoProp();
    SetAFInfoProp();
    // Both overriders leave their bit in the data-bin mask, and dump files that the metadata reads.
    OverriderDualCamCalData();
    OverriderOisCamCalData();
    setDataBinGroupProperty();
    MetadataUpdate();
    DumpEepromRawData();
}
