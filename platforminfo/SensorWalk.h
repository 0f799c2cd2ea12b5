#pragma once

#include "platform/IHalSensorList.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "tables/Numberings.h"

/// Walks the sensors that the platform found and names each one's role:
///
///     for (SensorWalk sensor(*this, *sensorList); sensor.next();) { ... sensor.role() ... }
///
/// The list's count is asked again before each step. What an unknown role means is up to the caller.
class SensorWalk {
  public:
    SensorWalk(CameraPlatformInfoZelvan& info, const NSCam::IHalSensorList& sensors)
        : mInfo(info), mSensors(sensors) {}

    /// Moves to the next sensor; false past the last one.
    bool next() {
        mIndex = tables::SensorIndex{Number(mIndex) + 1};
        if (Number(mIndex) >= mSensors.sensorCount()) {
            return false;
        }
        mDevice = tables::DeviceId{mSensors.deviceId(Number(mIndex))};
        // The device id is passed where a sensor index is asked for: the platform answers for both
        // numberings, and the role tables rely on this detour.
        mRole = tables::RoleId{mInfo.GetRoleIdBySensorIdx(Number(mDevice))};
        return true;
    }

    tables::SensorIndex index() const { return mIndex; }
    tables::DeviceId device() const { return mDevice; }
    /// -1 when the device id has no role.
    tables::RoleId role() const { return mRole; }

  private:
    CameraPlatformInfoZelvan& mInfo;
    const NSCam::IHalSensorList& mSensors;
    tables::SensorIndex mIndex{-1};
    tables::DeviceId mDevice{-1};
    tables::RoleId mRole{-1};
};
