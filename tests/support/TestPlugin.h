#pragma once

#include "platforminfo/CameraPlatformInfoZelvan.h"

/// The plug-in's class as a fresh object, with its inside open to tests. Gives the shared device table back
/// as it found it, so that rows which an object adds stay its own.
class TestPlugin : public CameraPlatformInfoZelvan {
  public:
    TestPlugin();
    ~TestPlugin();

    using CameraPlatformInfoZelvan::DeviceId2RoleId;
    using CameraPlatformInfoZelvan::mCamCalData;
    using CameraPlatformInfoZelvan::mDataBinExistMask;
    using CameraPlatformInfoZelvan::mModuleInfo;
    using CameraPlatformInfoZelvan::PhysicalDeviceId2RoleId;
    using CameraPlatformInfoZelvan::RoleId2MemberRoleIds;

  private:
    RoleIdDescMap mDevicesBefore;
};
