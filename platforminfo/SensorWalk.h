#pragma once

#include "platform/IHalSensorList.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"

/// Walks the sensors that the platform found and names each one's role:
///
///     for (SensorWalk sensor(*this, *sensorList); sensor.next();) { ... sensor.roleId() ... }
///
/// The list's count is asked again before each step. What an unknown role means is up to the caller.
class SensorWalk {
  public:
    SensorWalk(CameraPlatformInfoZelvan& info, const NSCam::IHalSensorList& sensors)
        : mInfo(info), mSensors(sensors) {}

    /// Moves to the next sensor; false past the last one.
    bool next() {
        if (++mIndex >= mSensors.sensorCount()) {
            return false;
        }
        mDeviceId = mSensors.deviceId(mIndex);
        // The device id is passed where a sensor index is asked for: the platform answers for both
        // numberings, and the role tables rely on this detour.
        mRoleId = mInfo.GetRoleIdBySensorIdx(mDeviceId);
        return true;
    }

    int index() const { return mIndex; }
    int deviceId() const { return mDeviceId; }
    /// -1 when the device id has no role.
    int roleId() const { return mRoleId; }

  private:
    CameraPlatformInfoZelvan& mInfo;
    const NSCam::IHalSensorList& mSensors;
    int mIndex = -1;
    int mDeviceId = -1;
    int mRoleId = -1;
};
